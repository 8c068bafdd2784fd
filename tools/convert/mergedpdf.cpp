// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tools/convert/mergedpdf.h"

#include <QIODevice>

#include <qpdf/ClosedFileInputSource.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <exception>
#include <memory>
#include <string>

namespace convert {

namespace {

using Handle = QPDFObjectHandle;

// Hands on what is written to a device, which notices its failures itself.
class DevicePipeline final : public Pipeline
{
public:
    explicit DevicePipeline(QIODevice* target) : Pipeline("picture", nullptr), device(target) {}

    void write(unsigned char const* bytes, size_t count) override
    {
        device->write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(count));
    }
    void finish() override {}

private:
    QIODevice* device;
};

// The pages of many files, whose data are read again when the document is written: a file is open
// only while it is read, and memory holds no more than what describes the pages.
class Document
{
public:
    Document() { document.emptyPDF(); }

    void Add(const BoundPicture& picture)
    {
        auto& source = sources.emplace_back(std::make_unique<QPDF>());
        source->processInputSource(
            std::make_shared<ClosedFileInputSource>(picture.file.constData()));
        for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(*source).getAllPages())
            QPDFPageDocumentHelper(document).addPage(page, false);
        titles.push_back(picture.title.toStdString());
    }

    void Write(const QByteArray& date, QIODevice* output)
    {
        AddOutline();
        AddInformation(date);
        DevicePipeline pipeline(output);
        QPDFWriter writer(document);
        writer.setOutputPipeline(&pipeline);
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.setDeterministicID(true);
        writer.write();
    }

private:
    void AddOutline();
    void AddInformation(const QByteArray& date);

    QPDF document;
    std::vector<std::unique_ptr<QPDF>> sources;
    std::vector<std::string> titles; // of the pages
};

void Document::AddOutline()
{
    const std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(document).getAllPages();
    Handle outline = document.makeIndirectObject(Handle::newDictionary());
    std::vector<Handle> items;
    for (size_t i = 0; i < pages.size(); ++i) {
        Handle item = document.makeIndirectObject(Handle::newDictionary());
        item.replaceKey("/Title", Handle::newUnicodeString(titles[i]));
        item.replaceKey("/Parent", outline);
        item.replaceKey("/Dest",
                        Handle::newArray({pages[i].getObjectHandle(), Handle::newName("/Fit")}));
        if (!items.empty()) {
            item.replaceKey("/Prev", items.back());
            items.back().replaceKey("/Next", item);
        }
        items.push_back(item);
    }
    outline.replaceKey("/Type", Handle::newName("/Outlines"));
    outline.replaceKey("/First", items.front());
    outline.replaceKey("/Last", items.back());
    outline.replaceKey("/Count", Handle::newInteger(static_cast<long long>(items.size())));
    document.getRoot().replaceKey("/Outlines", outline);
    document.getRoot().replaceKey("/PageMode", Handle::newName("/UseOutlines"));
}

void Document::AddInformation(const QByteArray& date)
{
    Handle information = Handle::newDictionary();
    information.replaceKey("/Creator", Handle::newString("plfconvert"));
    information.replaceKey("/CreationDate", Handle::newString(date.toStdString()));
    document.getTrailer().replaceKey("/Info", document.makeIndirectObject(information));
}

} // namespace

QString MergePdfs(const std::vector<BoundPicture>& files, const QByteArray& date, QIODevice* output)
{
    try {
        Document document;
        for (const BoundPicture& file : files)
            document.Add(file);
        document.Write(date, output);
    } catch (const std::exception& failure) {
        return QString::fromLocal8Bit(failure.what());
    }
    return {};
}

} // namespace convert
