// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Where the decoder sends what it draws: any class with the functions of NoSink. The decoder knows
// its sink when it is compiled, so that a vector costs no call.
#pragma once

#include <string_view>

/// Takes nothing: a pass for the sake of its count, or of its observer.
class NoSink
{
public:
    /// The pass begins.
    void Begin() {}
    /// Lines have another width.
    /// @param color  palette index of the pen
    void SetWidth(int /*width*/, int /*color*/) {}
    /// Lines have another color.
    void SetColor(int /*color*/, int /*width*/) {}
    /// A vector, in drawing units.
    /// @param continues  it begins where the path ended that was drawn last
    void Vector(bool /*continues*/, int /*x1*/, int /*y1*/, int /*x2*/, int /*y2*/) {}
    /// A text, with its baseline at a point in drawing units.
    void Text(std::string_view /*text*/, int /*x*/, int /*y*/) {}
    /// The pass is over.
    void Finish() {}
};

/// Hands everything to two sinks.
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
