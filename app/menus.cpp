// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The main window's menus, as a table.
#include "app/appwindow.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace {

// The Export item has the code of Ctrl+E as its id, and no shortcut: deliberate.
constexpr int kExportItemId = 0x4000045;

// Ids of menu items that have none of their own: negative, counting down.
int NextItemId()
{
    static int id = -1;
    return --id;
}

} // namespace

// An item of the menus; one without a text is a separator.
struct AppWindow::MenuRow {
    QMenu* menu;
    const char* text = nullptr;
    QKeyCombination key = {};                    // shortcut; {} = none
    void (*action)(AppWindow* window) = nullptr; // null if it opens a menu
    QMenu* submenu = nullptr;                    // the menu that it opens
    int id = NextItemId();
};

void AppWindow::BuildMenus()
{
    fileMenu = AddMenu(tr("&File"));
    viewMenu = AddMenu(tr("&View"));
    QMenu* helpMenu = AddMenu(tr("&Help"));
    exportMenu = new QMenu(this);
    bkclrItemId = NextItemId();
    using W = AppWindow;
    constexpr auto kCtrl = Qt::CTRL;
    // The letters after & are unique in each menu.
    // Open has Ctrl+F and not the usual Ctrl+O: deliberate, users know it.
    // clang-format off
    const MenuRow rows[] = {
        {fileMenu,   QT_TR_NOOP("&Open"),                     kCtrl | Qt::Key_F, [](W* w) { w->choose(); }},
        {fileMenu,   QT_TR_NOOP("&Save File As"),             kCtrl | Qt::Key_S, [](W* w) { w->saveAs(); }},
        {fileMenu,   QT_TR_NOOP("&Save Settings"),            {},                [](W* w) { w->savesettings(); }},
        {fileMenu},
        {fileMenu,   QT_TR_NOOP("&Export"),                   {},                nullptr, exportMenu, kExportItemId},
        {exportMenu, QT_TR_NOOP("&JPEG Compressed Bitmap"),   {},                [](W* w) { w->ExportJpeg(); }},
        {exportMenu, QT_TR_NOOP("&Encapsulated Postscript"),  {},                [](W* w) { w->ExportEPS(); }},
        {fileMenu},
        {fileMenu,   QT_TR_NOOP("&Print"),                    kCtrl | Qt::Key_P, [](W* w) { w->print(); }},
        {fileMenu},
        {fileMenu,   QT_TR_NOOP("P&roperties"),               {},                [](W* w) { w->fileProperties(); }},
        {fileMenu},
        {fileMenu,   QT_TR_NOOP("&Quit"),                     kCtrl | Qt::Key_Q, [](W*) { qApp->closeAllWindows(); }},
        {viewMenu,   QT_TR_NOOP("&Refresh"),                  Qt::Key_Escape,    [](W* w) { w->refresh(); }},
        {viewMenu,   QT_TR_NOOP("Reset &Aspect Ratio"),       kCtrl | Qt::Key_0, [](W* w) { w->resetaspect(); }},
        {viewMenu},
        {viewMenu,   QT_TR_NOOP("&White Background"),         kCtrl | Qt::Key_B, [](W* w) { w->backclr(); }, nullptr, bkclrItemId},
        {viewMenu},
        {helpMenu,   QT_TR_NOOP("&About Viewer"),             Qt::Key_F1,        [](W* w) { w->about(); }},
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
    if (row.text == nullptr) {
        row.menu->addSeparator();
        return;
    }
    QAction* item = row.menu->addAction(tr(row.text));
    item->setData(row.id);
    if (row.key != QKeyCombination())
        item->setShortcut(QKeySequence(row.key));
    if (row.submenu != nullptr)
        item->setMenu(row.submenu);
    else
        connect(item, &QAction::triggered, this, [this, action = row.action] { action(this); });
}

QAction* AppWindow::FindViewItem(int id) const
{
    const QList<QAction*> items = viewMenu->actions();
    const auto found = std::find_if(items.begin(), items.end(), [id](const QAction* item) {
        return !item->isSeparator() && item->data().toInt() == id;
    });
    return found == items.end() ? nullptr : *found;
}
