// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of the windows share: a fresh program state in a directory of its own, and answers to
// modal dialogs.
#pragma once

#include "app/state/globals.h"
#include "support/text.h"
#include "tests/kit/dialogs.h"
#include "tests/kit/directories.h"
#include "tests/kit/files.h"
#include "tests/kit/globals.h"
#include "tests/kit/plf.h"
#include "tests/kit/window.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace fixture {

/// The size of a view in which a line is drawn as wide as the file says.
constexpr QSize kUsualView(640, 480);

/// Whether pictures differ by a few shades at most: Qt begins a line where the exposed part does,
/// which moves the shades of a slanting one.
bool IsNear(const QImage& a, const QImage& b);

/// A base of test classes, whose init() and cleanup() call Begin and End.
class WindowTest
{
protected:
    WindowTest() = default;
    ~WindowTest() = default;

    /// Fresh directories, and no dialog is expected.
    void Begin();
    /// Every dialog that was expected has come, and no other.
    void End();

    /// Shows a graph in a view of a size.
    static void OpenView(Window& window, const std::string& path, QSize size = kUsualView);
    /// Shows a window whose user did not choose a file.
    void OpenEmpty(Window& window);

    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return directories->Path(name);
    }

    std::unique_ptr<Directories> directories;
    std::unique_ptr<Dialogs> dialogs;
};

} // namespace fixture
