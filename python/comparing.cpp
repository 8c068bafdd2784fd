// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "python/comparing.h"

#include "python/failure.h"
#include "tools/diff/compare.h"
#include "tools/diff/values.h"

namespace python {

namespace {

[[noreturn]] void Refuse(const char* setting, const std::string& value, const QString& expected)
{
    throw SettingsFailure{std::string(setting) + " '" + value + "': expected " +
                          expected.toStdString()};
}

double Tolerance(const std::string& text)
{
    const auto tolerance = diff::ParseTolerance(QString::fromStdString(text), diff::kPrintedWidth);
    if (!tolerance)
        Refuse("tolerance", text, QStringLiteral("drawing units, or a text such as 1% or 0.5mm"));
    return *tolerance;
}

diff::Area AreaOf(const std::string& text)
{
    const auto area = diff::ParseArea(QString::fromStdString(text));
    if (!area)
        Refuse("area", text, QStringLiteral("left, top, right, bottom in drawing units"));
    return *area;
}

} // namespace

diff::Rules ReadRules(const std::string& tolerance, const std::string& ignored,
                      const std::vector<std::string>& areas)
{
    diff::Rules rules;
    rules.tolerance = Tolerance(tolerance);
    if (!ignored.empty() && !diff::ParseIgnored(QString::fromStdString(ignored), &rules))
        Refuse("ignore", ignored, diff::IgnoredNames());
    for (const std::string& area : areas)
        rules.ignoredAreas.push_back(AreaOf(area));
    return rules;
}

diff::Comparison Compare(const Graph& first, const Graph& second, const diff::Rules& rules)
{
    return diff::Compare(first.drawing, second.drawing, rules);
}

} // namespace python
