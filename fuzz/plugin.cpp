// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a graph file, read as an image, with a size and clips that its last bytes choose.
#include "fuzz/target.h"
#include "plugin/plfhandler.h"

#include <QBuffer>
#include <QImage>

using imageformat::PlfHandler;

namespace {

constexpr size_t kChoices = 6;

// Small pictures mostly, so that many are drawn; some sizes are impossible.
int Side(uint8_t choice)
{
    constexpr int kImpossible = 1 << 30;
    return choice == 0xff ? kImpossible : choice % 100;
}

QRect Clip(uint8_t across, uint8_t down, int step)
{
    return {(across - 20) * step, (down - 20) * step, across % 64, down % 64};
}

void Choose(const uint8_t* choices, PlfHandler* handler)
{
    constexpr int kUnscaledStep = 5;
    if ((choices[0] & 1) != 0)
        handler->setOption(QImageIOHandler::ClipRect, Clip(choices[1], choices[2], kUnscaledStep));
    handler->setOption(QImageIOHandler::ScaledSize, QSize(Side(choices[3]), Side(choices[4])));
    if ((choices[0] & 2) != 0)
        handler->setOption(QImageIOHandler::ScaledClipRect, Clip(choices[5], choices[1], 1));
    if ((choices[0] & 4) != 0)
        handler->setOption(QImageIOHandler::BackgroundColor, QColor(Qt::transparent));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    return fuzz::PrepareGui(argc, argv);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    PlfHandler handler;
    handler.setDevice(&buffer);
    const bool isGraph = handler.canRead();
    fuzz::Require(buffer.pos() == 0, "a question reads nothing");
    if (isGraph)
        Choose(data + size - kChoices, &handler); // the header is longer
    QImage image;
    const bool isRead = handler.read(&image);
    fuzz::Require(isRead != image.isNull(), "an image is read or not");
    fuzz::Require(isGraph || !isRead, "what is no graph gives no image");
    return 0;
}
