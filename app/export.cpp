// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/export.h"

#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/jobs.h"
#include "app/messages.h"
#include "app/savedialog.h"
#include "app/state/globals.h"
#include "app/statustext.h"
#include "meta/plfmeta.h"
#include "support/files.h"
#include "support/text.h"
#include "support/wholefile.h"

#include <QBuffer>
#include <QPixmap>
#include <QPointer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

#include <unistd.h>

namespace {

// One step of giExportQuality on Qt's scale of 0 to 100.
constexpr int kQualityStep = 10;

// The directory of names without one, in bytes.
QByteArray ExportDirectory()
{
    if (gszCurrentWorkingDir[0] != 0)
        return gszCurrentWorkingDir;
    const std::unique_ptr<char, decltype(&free)> current(getcwd(nullptr, 0), &free);
    return current.get();
}

// Prepends a directory to a name without one and stores the result as the export's file name.
// Reports a path that does not fit and returns false.
bool CompleteExportName(QWidget* parent, QByteArray name)
{
    if (!name.contains('/') && !name.contains('\\'))
        name = ExportDirectory() + '/' + name;
    if (CopyText(gszCvtFilename, name.constData()))
        return true;
    ShowTooLong(parent, AppWindow::tr("The name of the exported file"),
                static_cast<size_t>(name.size()), kPathSize - 1);
    return false;
}

// Any configured value is passed on; it is only limited so that the product is an int.
int JpegQuality()
{
    constexpr int kMost = std::numeric_limits<int>::max() / kQualityStep;
    return std::clamp(giExportQuality, -kMost, kMost) * kQualityStep;
}

// Writes a picture under the export's file name. QPixmap::save would wait for a reader of a pipe.
bool SaveJpeg(const QPixmap& picture)
{
    QBuffer jpeg;
    if (!jpeg.open(QIODevice::WriteOnly) || !picture.save(&jpeg, "JPEG", JpegQuality()))
        return false;
    WholeFile file(gszCvtFilename);
    if (file.Open() != 0)
        return false;
    file.Write(jpeg.data().constData(), static_cast<size_t>(jpeg.size()));
    return file.Commit() == 0;
}

// The differences between the exports, except for writing.
struct ExportKind {
    int job; // its bit of giCmdArg
    const char* extension;
    QString caption;
    QString filter;
};

QByteArray ExportName(AppWindow& window, const ExportKind& kind, bool asJob)
{
    if (asJob)
        return gszCvtFilenameBase;
    return AskSaveName(&window, {"Export Graphic File", kind.caption, kind.filter, kind.extension})
        .toLocal8Bit();
}

// Determines the file name, calls write and, if the export is a job, continues with the remaining
// jobs. A box may be shown; if a host's command arrives while it is open, that command must not run
// this job again, and the remaining jobs are no longer ours to run.
template <typename Write> void Export(AppWindow& window, const ExportKind& kind, Write write)
{
    const bool asJob = (giCmdArg & kind.job) != 0;
    // One character per byte: the bytes need not be valid text, and decoded as text they could
    // become the name of another file. Only ASCII characters matter until they are bytes again.
    QString name = QString::fromLatin1(ExportName(window, kind, asJob));
    if (name.isEmpty())
        return; // a job without a name remains pending, deliberately
    AppendFileExt(name, kind.extension);
    const QPointer<DrawView> view(window.view); // the window may be closed while a box is open
    const Turn turn;
    MarkDone(asJob ? kind.job : 0);
    if (CompleteExportName(&window, name.toLatin1()))
        write();
    if (asJob && !view.isNull() && !turn.IsOver())
        view->PostCmdargDone(JobNumber(kind.job));
    ClearDone(kind.job);
}

} // namespace

void AppendFileExt(QString& name, const char* ext)
{
    const QLatin1StringView extension(ext);
    if (name.endsWith(extension))
        return;
    qsizetype start = name.lastIndexOf(u'/');
    if (start < 0)
        start = name.lastIndexOf(u'\\');
    if (name.indexOf(u'.', std::max<qsizetype>(start, 0)) < 0)
        name += extension;
}

void AppWindow::saveAs()
{
    if (gpPlfmembuf == nullptr) {
        status->Show(tr("Nothing to save"), kSavedTime);
        return;
    }
    const QString name =
        AskSaveName(this, {"Save Graphic File", tr("Save as"), tr(kGraphFilter), ".plf"});
    // A host's command may have replaced or closed the graph while the dialog was open.
    if (name.isEmpty() || gpPlfmembuf == nullptr)
        return;
    WholeFile file(name.toLocal8Bit().toStdString());
    bool isOpen = file.Open() == 0;
    if (isOpen) {
        file.Write(gpPlfmembuf, gdwFilesize);
        // A failure to write is deliberately not reported; an older file is as it was then.
        file.Commit();
        isOpen = !file.IsNameRefused();
    }
    if (!isOpen) {
        // No blank between the text and the name: deliberate.
        ShowError(this, tr("Error"), tr("Error opening") + name);
        return;
    }
    status->Show(name + tr(" saved."), kSavedTime);
}

void AppWindow::ExportJpeg()
{
    const ExportKind jpeg = {kJobJpeg, ".jpg", tr("Export JPEG image"),
                             tr("JPEG image (*.jpg);;All Files (*)")};
    Export(*this, jpeg, [this] {
        if (!SaveJpeg(view->grab()))
            ShowError(nullptr, tr("Save failed"),
                      tr("Export failed for file: ") + QString::fromLocal8Bit(gszCvtFilename));
    });
}

// Reports neither success nor failure.
void AppWindow::ExportEPS()
{
    const ExportKind eps = {kJobEps, ".eps", tr("Export EPS file"),
                            tr("EPS file (*.eps);;All Files (*)")};
    Export(*this, eps, [this] { view->drawIt(nullptr, false, kConvertEps); });
}

long copyFile(const char* dst, const char* src)
{
    const FilePtr from(OpenForReading(src));
    const FilePtr to(OpenForWriting(dst));
    if (from == nullptr || to == nullptr || fseek(from.get(), 0, SEEK_END) != 0)
        return 0;
    const long size = std::max(ftell(from.get()), 0L);
    rewind(from.get());
    const auto bytes = static_cast<size_t>(size);
    const std::unique_ptr<char, decltype(&free)> copy(static_cast<char*>(malloc(bytes)), &free);
    if (copy == nullptr && bytes > 0)
        return 1;
    fwrite(copy.get(), 1, fread(copy.get(), 1, bytes, from.get()), to.get());
    return size;
}

char* MakeCvtSavePath(const char* path, const char* marker)
{
    if (!CopyText(gszCvtSavePath, path))
        return nullptr;
    char* cut = strstr(gszCvtSavePath, marker);
    if (cut != nullptr)
        *cut = 0;
    return cut;
}
