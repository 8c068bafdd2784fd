// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/appwindow.h"
#include "app/state/globals.h"

#include <QMessageBox>

void AppWindow::about()
{
    const QString viewer = tr("PLF File Viewer version %1\n"
                              "Copyright (c) 2026 the plotvw contributors\n"
                              "\n")
                               .arg(QString::fromLatin1(gszVersion));
    const QString qt = tr("The user interface is built with Qt, version %1.\n"
                          "Qt is copyright The Qt Company Ltd. and other contributors\n"
                          "and is used under the GNU Lesser General Public License, version 3.\n"
                          "\n")
                           .arg(QString::fromLatin1(qVersion()));
    const QString jpeg = tr("JPEG images are written by the JPEG library that Qt uses.\n"
                            "This software is based in part on\n"
                            "the work of the Independent JPEG Group.");
    QMessageBox::about(this, tr("About Viewer"), viewer + qt + jpeg);
}
