// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/appwindow.h"

#include "app/drawview.h"
#include "app/globals.h"
#include "app/messages.h"
#include "app/statustext.h"
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
#include <QLocalSocket>
#include <QMenu>
#include <QPointer>
#include <QResizeEvent>

#include <algorithm>
#include <cstring>

namespace {

// How long the status bar shows a text about something that went well, milliseconds.
constexpr int kStatusTime = 2000;
// A damaged settings file may hold any window. Farthest that one may stand from the origin: window
// systems count pixels in 16 bits. Longest side, and largest area: it takes four bytes a pixel.
constexpr int64_t kMaxWindowPlace = 32767;
constexpr int64_t kMaxWindowSide = 16384;
constexpr int64_t kMaxWindowArea = 100'000'000;

// Height of the window for a width of 1, landscape and portrait.
constexpr double kLandscape = static_cast<double>(kPlfHeight) / kPlfWidth;
constexpr double kPortrait = static_cast<double>(kPlfWidth) / kPlfHeight;

int WindowPlace(int64_t value)
{
    return static_cast<int>(std::clamp(value, -kMaxWindowPlace, kMaxWindowPlace));
}

// A window without a size would never be seen.
QSize WindowSize(int64_t width, int64_t height)
{
    width = std::clamp<int64_t>(width, 1, kMaxWindowSide);
    height = std::clamp<int64_t>(height, 1, std::min(kMaxWindowSide, kMaxWindowArea / width));
    return {static_cast<int>(width), static_cast<int>(height)};
}

// For a source that is known to fit: a path buffer or a part of one.
void CopyPath(char (&buffer)[kPathSize], const char* path)
{
    [[maybe_unused]] const bool fits = CopyText(buffer, path);
    Q_ASSERT(fits);
}

} // namespace

AppWindow::AppWindow() : status(new StatusText(this))
{
    setObjectName(QStringLiteral("KORVEL Graphics Viewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    ConnectHost();
    initGraphics();
    ReadCfgFile();
    ReadSettingsFile();
    BuildMenus();
    if (gbBkClrWhite)
        CheckBackgroundItem();
    PlaceWindow();
    status->Show(tr("Ready"), kStatusTime);
}

AppWindow::~AppWindow()
{
    checkDeleteTempFile();
    // The socket outlives the window and goes with the application.
    if (socket != nullptr)
        socket->setParent(qApp);
    if (gpMainwnd == this)
        gpMainwnd = nullptr;
}

// Moves the window to grWinPos, as far as that can be, and makes grWinPos tell where it is.
void AppWindow::PlaceWindow()
{
    const QPoint corner(WindowPlace(grWinPos.left), WindowPlace(grWinPos.top));
    const QSize size = WindowSize(grWinPos.width, grWinPos.height);
    SetRect(&grWinPos, corner.x(), corner.y(), corner.x() + size.width(),
            corner.y() + size.height());
    move(corner);
    resize(size);
}

// The item is not checkable until the background was white once: that is how it starts when the
// settings file says so.
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
    OwnDialog<QFileDialog> dialog(this, tr("Open File"), QString(),
                                  tr("KORVEL Graphics (*.plf);;All Files (*)"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    if (!dialog.IsAccepted())
        return;
    gbIsTempFile = false; // what the user picks is never deleted
    load(dialog->selectedFiles().constFirst());
}

void AppWindow::load(const QString& name)
{
    loadFile(name.toLocal8Bit(), name);
}

void AppWindow::loadFile(const QByteArray& path, const QString& name)
{
    const QPointer<AppWindow> self(this);
    const bool fits = StoreFileName(path);
    if (self.isNull())
        return;
    setWindowTitle(tr("KORVEL Viewer"));
    char message[kPathSize] = "";
    if (!fits || LoadPlfFile(gszPlffileOrig, message) != 0) {
        if (fits)
            ShowError(this, tr("Error"), QString::fromLatin1(message));
        if (self.isNull())
            return;
        ForgetDocument(fits ? QString::fromLocal8Bit(gszPlffileOrig) : name);
        return;
    }
    CopyPath(gszPlffileName, GetFilenameNoPath(gszPlffileOrig));
    // In a title "[*]" stands for a mark of changed documents, and twice for itself.
    const QString file = QString::fromLocal8Bit(gszPlffileName);
    setWindowTitle(tr("KORVEL Viewer - ") +
                   QString(file).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
    if (view != nullptr)
        view->update();
    status->Show(tr("Loaded document ") + name, kStatusTime);
}

// Writes the full path of a document into gszPlffileOrig; relative names stand in the directory at
// start-up. The first document of the program also names what is exported, until the end. Says so
// and returns false when the path does not fit.
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
// painted again to say so. The properties keep the last short name and the numbers, deliberately:
// their empty path says that these are of the past.
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
    WriteSettingsFile();
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

// The two window events keep grWinPos at what the settings file is to hold. They are not passed on.
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

void AppWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (giAutosave != 0)
        WriteSettingsFile();
    // The pointer goes with the memory: events that are still waiting may ask for a repaint.
    FreePlfBuffer();
}
