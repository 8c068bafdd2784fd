// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "app/appwindow.h"

#include "app/drawview.h"
#include "app/globals.h"
#include "app/messages.h"
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
#include <QMenuBar>
#include <QResizeEvent>
#include <QStatusBar>

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

// Ids of menu items that have none of their own: negative, counting down.
int NextItemId()
{
    static int id = -1;
    return --id;
}

// For a source that is known to fit: a path buffer or a part of one.
void CopyPath(char (&buffer)[kPathSize], const char* path)
{
    [[maybe_unused]] const bool fits = CopyText(buffer, path);
    Q_ASSERT(fits);
}

} // namespace

AppWindow::AppWindow()
{
    setObjectName(QStringLiteral("KORVEL Graphics Viewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    initGraphics();
    ReadCfgFile();
    ReadSettingsFile();
    BuildMenus();
    if (gbBkClrWhite)
        CheckBackgroundItem();
    PlaceWindow();
    statusBar()->showMessage(tr("Ready"), kStatusTime);
}

// Its own copy, as moving and resizing store where the window is on the way.
void AppWindow::PlaceWindow()
{
    const Rect place = grWinPos;
    move(WindowPlace(place.left), WindowPlace(place.top));
    resize(WindowSize(place.width, place.height));
}

// An item of the menus; one without a text is a separator.
struct AppWindow::MenuRow {
    QMenu* AppWindow::*menu;
    const char* text;
    QKeyCombination key; // shortcut; {} = none
    void (*action)(AppWindow* window);
    int AppWindow::*id = nullptr; // member that keeps the item's id
};

void AppWindow::BuildMenus()
{
    fileMenu = AddMenu(tr("&File"));
    viewMenu = AddMenu(tr("&View"));
    using Window = AppWindow;
    constexpr auto kFile = &Window::fileMenu;
    constexpr auto kView = &Window::viewMenu;
    // Open has Ctrl+F and not the usual Ctrl+O: kept as users know it.
    // clang-format off
    const MenuRow rows[] = {
        {kFile, QT_TR_NOOP("&Open"),               Qt::CTRL | Qt::Key_F, [](Window* w) { w->choose(); }},
        {kFile, QT_TR_NOOP("&Save Settings"),      {},                   [](Window* w) { w->savesettings(); }},
        {kFile, nullptr,                           {},                   nullptr},
        {kFile, QT_TR_NOOP("&Quit"),               Qt::CTRL | Qt::Key_Q, [](Window*) { qApp->closeAllWindows(); }},
        {kView, QT_TR_NOOP("&Refresh"),            Qt::Key_Escape,       [](Window* w) { w->refresh(); }},
        {kView, QT_TR_NOOP("Reset &Aspect Ratio"), Qt::CTRL | Qt::Key_0, [](Window* w) { w->resetaspect(); }},
        {kView, nullptr,                           {},                   nullptr},
        {kView, QT_TR_NOOP("&White Background"),   Qt::CTRL | Qt::Key_B, [](Window* w) { w->backclr(); }, &Window::bkclrItemId},
        {kView, nullptr,                           {},                   nullptr},
    };
    // clang-format on
    for (const MenuRow& row : rows)
        AddMenuRow(row);
}

QMenu* AppWindow::AddMenu(const QString& title)
{
    auto* menu = new QMenu(title, this);
    menuBar()->addMenu(menu);
    return menu;
}

void AppWindow::AddMenuRow(const MenuRow& row)
{
    QMenu* menu = this->*row.menu;
    if (row.text == nullptr) {
        menu->addSeparator();
        return;
    }
    QAction* item = menu->addAction(tr(row.text));
    item->setData(NextItemId());
    if (row.key.toCombined() != 0)
        item->setShortcut(QKeySequence(row.key));
    connect(item, &QAction::triggered, this, [this, action = row.action] { action(this); });
    if (row.id != nullptr)
        this->*row.id = item->data().toInt();
}

QAction* AppWindow::FindViewItem(int id) const
{
    const QList<QAction*> items = viewMenu->actions();
    const auto found = std::find_if(items.begin(), items.end(), [id](const QAction* item) {
        return !item->isSeparator() && item->data().toInt() == id;
    });
    return found == items.end() ? nullptr : *found;
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
    QFileDialog dialog(this, tr("Open File"), QString(),
                       tr("KORVEL Graphics (*.plf);;All Files (*)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted)
        return;
    gbIsTempFile = false; // what the user picks is never deleted
    load(dialog.selectedFiles().constFirst());
}

void AppWindow::load(const QString& name)
{
    const bool fits = StoreFileName(name);
    setWindowTitle(tr("KORVEL Viewer"));
    char message[kPathSize] = "";
    if (!fits || LoadPlfFile(gszPlffileOrig, message) != 0) {
        if (fits)
            ShowError(this, tr("Error"), QString::fromLatin1(message));
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
    statusBar()->showMessage(tr("Loaded document ") + name, kStatusTime);
}

// Writes the full path of a document into gszPlffileOrig; relative names stand in the directory at
// start-up. The first document of the program also names what is exported, until the end. Says so
// and returns false when the path does not fit.
bool AppWindow::StoreFileName(const QString& name)
{
    const QByteArray local = name.toLocal8Bit();
    QByteArray path = local;
    if (FilenameHasPath(local.constData()) == 0)
        path = QByteArray(gszCurdir) + '/' + local;
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
// painted again to say so.
void AppWindow::ForgetDocument(const QString& name)
{
    statusBar()->showMessage(tr("Error reading ") + name);
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
