// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/appwindow.h"

#include "app/drawview.h"
#include "app/jobs.h"
#include "app/messages.h"
#include "app/state/globals.h"
#include "app/statustext.h"
#include "app/windowplace.h"
#include "meta/palette.h"
#include "meta/plfbuffer.h"
#include "meta/plfmeta.h"
#include "support/config.h"
#include "support/numbers.h"
#include "support/paths.h"
#include "support/settings.h"
#include "support/text.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMenu>
#include <QPointer>
#include <QResizeEvent>
#include <QScreen>

#include <algorithm>
#include <cstring>

namespace {

// Height of the window for a width of 1, landscape and portrait.
constexpr double kLandscape = static_cast<double>(kPlfHeight) / kPlfWidth;
constexpr double kPortrait = static_cast<double>(kPlfWidth) / kPlfHeight;

// The parts of the screens that windows may cover.
QList<QRect> ScreenAreas()
{
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

// For sources that always fit: a path buffer or a part of one.
void CopyPath(char (&buffer)[kPathSize], const char* path)
{
    [[maybe_unused]] const bool fits = CopyText(buffer, path);
    Q_ASSERT(fits);
}

void SaveOnClosing()
{
    if (giAutosave != 0)
        WriteSettingsFile();
}

} // namespace

AppWindow::AppWindow() : status(new StatusText(this))
{
    setObjectName(QStringLiteral("KORVEL Graphics Viewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("KORVEL Viewer"));
    ConnectHost();
    initGraphics();
    ReadCfgFile();
    ReadSettingsFile();
    BuildMenus();
    if (gbBkClrWhite)
        CheckBackgroundItem();
    PlaceWindow();
    status->Show(tr("Ready"), kSuccessTime);
}

AppWindow::~AppWindow()
{
    checkDeleteTempFile();
    if (gpMainwnd == this)
        gpMainwnd = nullptr;
}

// Moves the window to grWinPos, or to the nearest usable position and size, and stores these in
// grWinPos.
void AppWindow::PlaceWindow()
{
    const QRect window = UsableWindow(grWinPos, gfCmdlineWndpos == 0, ScreenAreas());
    SetRect(&grWinPos, window.x(), window.y(), window.x() + window.width(),
            window.y() + window.height());
    move(window.topLeft());
    resize(window.size());
}

// Checkable only after the first toggle if the settings start with the graph's background.
void AppWindow::CheckBackgroundItem()
{
    QAction* item = FindViewItem(bkclrItemId);
    if (item == nullptr)
        return;
    item->setCheckable(true);
    item->setChecked(gbBkClrWhite);
}

void AppWindow::choose()
{
    OwnDialog<QFileDialog> dialog(this, tr("Open File"), QString(), tr(kGraphFilter));
    dialog->setFileMode(QFileDialog::ExistingFile);
    if (!dialog.IsAccepted())
        return;
    gbIsTempFile = false; // a file that the user chooses is never deleted
    load(dialog->selectedFiles().constFirst());
}

void AppWindow::load(const QString& name)
{
    loadFile(name.toLocal8Bit(), name);
}

void AppWindow::loadFile(const QByteArray& path, const QString& name)
{
    const QPointer<AppWindow> self(this);
    const Turn turn = Turn::Begin();
    const bool fits = StoreFileName(path); // may show a box
    if (self.isNull() || turn.IsOver())
        return;
    setWindowTitle(tr("KORVEL Viewer"));
    char message[kPathSize] = "";
    if (!fits || LoadPlfFile(gszPlffileOrig, message) != 0) {
        if (fits)
            ShowError(this, tr("Error"), QString::fromLatin1(message));
        // A graph that the host sent while the box was open is kept.
        if (!self.isNull() && !turn.IsOver())
            ForgetDocument(fits ? QString::fromLocal8Bit(gszPlffileOrig) : name);
        return;
    }
    CopyPath(gszPlffileName, GetFilenameNoPath(gszPlffileOrig));
    // In a title, Qt replaces "[*]" by a mark of changed documents; doubled, it is literal.
    const QString file = QString::fromLocal8Bit(gszPlffileName);
    setWindowTitle(tr("KORVEL Viewer - ") +
                   QString(file).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
    if (view != nullptr)
        view->update();
    status->ShowBeforePass(tr("Loaded document ") + name, kSuccessTime);
}

// Writes the full path of a document into gszPlffileOrig; relative names are in the working
// directory at start-up. The first document also sets the name of exported files, once and for all.
// Reports a path that does not fit and returns false.
bool AppWindow::StoreFileName(const QByteArray& name)
{
    QByteArray path = name;
    if (FilenameHasPath(name.constData()) == 0)
        path = QByteArray(gszCurdir) + '/' + name;
    if (!CopyText(gszPlffileOrig, path.constData())) {
        ShowTooLong(this, tr("The file name"), static_cast<size_t>(path.size()), kPathSize - 1);
        return false;
    }
    if (gszCvtFilenameBase[0] == 0) {
        CopyPath(gszCvtFilenameBase, gszPlffileOrig);
        StripFileExt(gszCvtFilenameBase, ".plf");
    }
    return true;
}

// After a failed load there is no current file; the view, which may still show the last one, is
// repainted empty. The properties keep the last graph's short name and vector count, and show the
// size of the rejected file, deliberately: their empty path says that there is no current file.
void AppWindow::ForgetDocument(const QString& name)
{
    status->Show(tr("Error reading ") + name);
    gszPlffileOrig[0] = 0;
    FreePlfBuffer();
    if (view != nullptr)
        view->update();
}

void AppWindow::refresh()
{
    view->ClearZoom();
    view->update();
}

void AppWindow::savesettings()
{
    if (WriteSettingsFile() == 0)
        status->Show(tr("Settings saved."), kSavedTime);
}

void AppWindow::backclr()
{
    gbBkClrWhite = !gbBkClrWhite;
    CheckBackgroundItem();
    view->update();
}

void AppWindow::resetaspect()
{
    const double aspect = giCmdPrintOrientation == 0 ? kLandscape : kPortrait;
    const double pixelShape = static_cast<double>(logicalDpiY()) / logicalDpiX();
    resize(width(), TruncToInt(width() * aspect * pixelShape));
}

// The two window events update grWinPos, which the settings file stores. They are not passed on.
void AppWindow::moveEvent(QMoveEvent* /*event*/)
{
    const QPoint corner = pos();
    grWinPos.left = corner.x();
    grWinPos.top = corner.y();
    grWinPos.right = grWinPos.left + grWinPos.width;
    grWinPos.bottom = grWinPos.top + grWinPos.height;
}

void AppWindow::resizeEvent(QResizeEvent* event)
{
    grWinPos.width = event->size().width();
    grWinPos.height = event->size().height();
    moveEvent(nullptr);
}

void AppWindow::LeaveFiles()
{
    SaveOnClosing();
    checkDeleteTempFile();
}

void AppWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    SaveOnClosing();
    giCmdArg = 0; // without a graph the remaining jobs would write empty pictures
    // The pointer is cleared too, because waiting events may request a repaint.
    FreePlfBuffer();
}
