// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: a settings file. It is read, a window is created with it, and it is written again.
#include "support/settings.h"
#include "app/appwindow.h"
#include "app/state/globals.h"
#include "fuzz/target.h"
#include "tests/kit/globals.h"

#include <QApplication>
#include <QFile>
#include <QLocalSocket>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr const char* kName = ".plotvwsettings";
constexpr qsizetype kVersionAndFlag = 11;
constexpr qsizetype kWholeSize = 59;
// Larger than any screen; see windowplace.cpp.
constexpr int64_t kFarthest = 32767;
constexpr int64_t kLongest = 16384;
constexpr int64_t kLeastWidth = 160;
constexpr int64_t kLeastHeight = 120;
constexpr int64_t kLargest = 100'000'000;

fuzz::Sandbox& Home()
{
    static fuzz::Sandbox sandbox;
    return sandbox;
}

QByteArray Written()
{
    fuzz::Require(WriteSettingsFile() == 0, "the settings can be written");
    QFile file(Home().Path(kName));
    fuzz::Require(file.open(QIODevice::ReadOnly), "the settings are there");
    return file.readAll();
}

// Any byte but 0 means white and is written back as 1.
QByteArray Settled(QByteArray image)
{
    if (image.size() >= kVersionAndFlag)
        image[kVersionAndFlag - 1] = image.at(kVersionAndFlag - 1) != 0 ? '\1' : '\0';
    return image.left(kWholeSize);
}

void CheckRoundTrip(const QByteArray& input)
{
    fuzz::Require(ReadSettingsFile() == 0, "a file that is there is read");
    const QByteArray image = Written();
    fuzz::Require(image.size() == kWholeSize, "the settings are 59 bytes");
    fuzz::Require(image.startsWith(Settled(input)), "what was read is written again");
}

void CheckWindow()
{
    const AppWindow window;
    for (const int64_t place : {grWinPos.left, grWinPos.top})
        fuzz::Require(std::abs(place) <= kFarthest, "the window is near the screen");
    for (const int64_t side : {grWinPos.width, grWinPos.height})
        fuzz::Require(side <= kLongest, "the window is not too large");
    fuzz::Require(grWinPos.width >= kLeastWidth && grWinPos.height >= kLeastHeight,
                  "the window has room for something");
    fuzz::Require(grWinPos.width * grWinPos.height <= kLargest, "the window fits into memory");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    new QApplication(*argc, *argv); // as long as the process
    Home();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    Home().Write(kName, input);
    CheckRoundTrip(input);
    Home().Write(kName, input);
    ResetGlobals();
    CheckWindow();
    qDeleteAll(qApp->findChildren<QLocalSocket*>()); // they outlive their windows
    ResetGlobals();
    return 0;
}
