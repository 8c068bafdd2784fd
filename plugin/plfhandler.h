// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Reads a graph as an image for QImageReader: the viewer's view of the whole graph, or of a part of
// it.
#pragma once

#include "plugin/layout.h"

#include <QColor>
#include <QImageIOHandler>

namespace imageformat {

/// Needs no application object; texts are drawn only if there is one for windows, as Qt has no
/// fonts otherwise. Any number of handlers may read at once, each in its own thread.
class PlfHandler final : public QImageIOHandler
{
public:
    /// Whether a device is at the header of a graph, which may be packed. Reads nothing.
    static bool IsAtGraph(QIODevice* device);

    [[nodiscard]] bool canRead() const override;
    /// Reads the device up to its end. Of a damaged graph it draws what can be drawn.
    /// @return false if it is no graph, the picture, or what a packed graph unpacks to, is too
    /// large for Qt or QImageReader's limit, or there is not enough
    ///         memory; image is unchanged
    bool read(QImage* image) override;
    [[nodiscard]] QVariant option(ImageOption option) const override;
    void setOption(ImageOption option, const QVariant& value) override;
    [[nodiscard]] bool supportsOption(ImageOption option) const override;

private:
    bool Draw(QImage* image);
    [[nodiscard]] QImage::Format Format() const;

    Wishes wishes;
    QColor background = Qt::white;
    mutable bool wasAtGraph = false; // what Size tells, also after the device has been read
};

} // namespace imageformat
