// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The plug-in as Qt finds it: "plf" is a format of images that it reads.
#include "plugin/plfhandler.h"

#include <QIODevice>
#include <QImageIOPlugin>

namespace imageformat {

class PlfPlugin final : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "plf.json")

public:
    [[nodiscard]] Capabilities capabilities(QIODevice* device,
                                            const QByteArray& format) const override;
    [[nodiscard]] QImageIOHandler* create(QIODevice* device,
                                          const QByteArray& format) const override;
};

// A program that names no format asks each plug-in, about any file: first whether it is what its
// extension says. Packed graphs are told then, as Qt's plug-in for SVG takes any packed file later.
QImageIOPlugin::Capabilities PlfPlugin::capabilities(QIODevice* device,
                                                     const QByteArray& format) const
{
    if (format == "plf")
        return CanRead;
    if (!format.isEmpty() && format != "gz")
        return {};
    const bool isReadable = device != nullptr && device->isReadable();
    return isReadable && PlfHandler::IsAtGraph(device) ? CanRead : Capabilities();
}

QImageIOHandler* PlfPlugin::create(QIODevice* device, const QByteArray& /*format*/) const
{
    auto* handler = new PlfHandler;
    handler->setDevice(device);
    handler->setFormat("plf");
    return handler;
}

} // namespace imageformat

#include "plfplugin.moc"
