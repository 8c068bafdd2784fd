// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where the decoder sends what it draws: any class with the functions of NoSink. The sink is a
// template parameter of the decoder, so a vector costs no virtual call.
#pragma once

#include <string_view>

/// Ignores everything: for passes that only count, or only inform an observer.
class NoSink
{
public:
    /// The pass begins.
    void Begin() {}
    /// The line width has changed.
    /// @param color  palette index of the pen
    void SetWidth(int /*width*/, int /*color*/) {}
    /// The line color has changed.
    void SetColor(int /*color*/, int /*width*/) {}
    /// A vector, in drawing units.
    /// @param continues  it begins where the last path ended
    void Vector(bool /*continues*/, int /*x1*/, int /*y1*/, int /*x2*/, int /*y2*/) {}
    /// A text, with its baseline at a point in drawing units.
    void Text(std::string_view /*text*/, int /*x*/, int /*y*/) {}
    /// The pass ends.
    void Finish() {}
};

/// Passes everything to two sinks.
template <class First, class Second> class BothSinks
{
public:
    BothSinks(First& a, Second& b) : first(a), second(b) {}

    void Begin()
    {
        first.Begin();
        second.Begin();
    }
    void SetWidth(int width, int color)
    {
        first.SetWidth(width, color);
        second.SetWidth(width, color);
    }
    void SetColor(int color, int width)
    {
        first.SetColor(color, width);
        second.SetColor(color, width);
    }
    void Vector(bool continues, int x1, int y1, int x2, int y2)
    {
        first.Vector(continues, x1, y1, x2, y2);
        second.Vector(continues, x1, y1, x2, y2);
    }
    void Text(std::string_view text, int x, int y)
    {
        first.Text(text, x, y);
        second.Text(text, x, y);
    }
    void Finish()
    {
        first.Finish();
        second.Finish();
    }

private:
    First& first;
    Second& second;
};
