// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Copies of files, for the viewer to delete.
#pragma once

#include <QString>
#include <QStringList>

namespace krvhost {

class TemporaryCopies
{
public:
    /// Replaces the words that name files by copies and adds "-tmp". Empty on failure.
    QString HandOver(const QString& command);
    /// Deletes what the viewer left: the last one when it was ended by force, and those that it
    /// could not load.
    void RemoveRest() const;

private:
    QString Copy(const QString& file);

    QStringList names;
};

} // namespace krvhost
