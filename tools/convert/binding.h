// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// One document of many pictures, which are made one by one before.
#pragma once

#include "tools/convert/mergedpdf.h"
#include "tools/convert/options.h"
#include "tools/convert/workers.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace convert {

/// Makes the document, or the sheets, in worker processes, and prints what goes wrong.
/// @param start  see WorkerTasks
/// @param token  see TemporaryName
/// @return whether everything was written, and how the work ended
bool BindPictures(const std::vector<BoundPicture>& pictures, const Options& options,
                  const std::function<std::shared_ptr<void>()>& start, const QByteArray& token,
                  WorkResult* result);

/// The name of a sheet: with its number, if there are more than one.
QString SheetName(const QString& name, int number, int count);

} // namespace convert
