// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The smallest program of the toolkit with a main window, as large as the viewer's and in its
// place.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.move(200, 200);
    window.resize(640, 487);
    window.show();
    return QApplication::exec();
}
