// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/viewfixture.h"

#include "support/settings.h"

namespace fixture {

namespace {

constexpr int kGreen = 10;   // palette index
constexpr int kRedHue = 90;  // degrees
constexpr int kRedIndex = 2; // line index

int Scaled(int at, int pixels, int units)
{
    return static_cast<int>(static_cast<double>(at) / pixels * units);
}

} // namespace

QRect AreaUnder(const Drag& drag, QSize view)
{
    const auto x = [&](int at) { return Scaled(at, view.width(), 4096); };
    const auto y = [&](int at) { return Scaled(at, view.height(), 3120); };
    return {QPoint(x(drag.from.x()), y(drag.from.y())),
            QPoint(x(drag.to.x()) - 1, y(drag.to.y()) - 1)};
}

std::string CrossFile()
{
    std::string file = plf::Start() + plf::ColorMapEntry(kRedIndex, kRedHue, 50, 100) +
                       plf::LineIndex(kRedIndex) + plf::Width(kCrossWidth);
    for (const QLine& line : kCross)
        file += plf::Line(line.x1(), line.y1(), line.x2(), line.y2());
    return plf::WithBackground(file, kGreen) + plf::End();
}

void ViewTest::Begin()
{
    WindowTest::Begin();
    gbBkClrWhite = false;
    static_cast<void>(WriteSettingsFile());
}

} // namespace fixture
