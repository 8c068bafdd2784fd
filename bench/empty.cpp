// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The smallest Qt program with a main window and a menu, of the viewer's size and at its position.
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.move(200, 200);
    window.resize(640, 487);
    window.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("&Quit"));
    window.show();
    return QApplication::exec();
}
