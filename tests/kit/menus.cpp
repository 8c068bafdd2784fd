// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/menus.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include <algorithm>

namespace fixture {

QAction* FindItem(const QList<QAction*>& items, const char* text)
{
    const auto found = std::find_if(items.begin(), items.end(), [text](const QAction* item) {
        return item->text() == QLatin1String(text);
    });
    return found == items.end() ? nullptr : *found;
}

QList<QAction*> MenuItems(const Window& window, const char* menu)
{
    const QAction* item = FindItem(window->menuBar()->actions(), menu);
    return item == nullptr ? QList<QAction*>() : item->menu()->actions();
}

void ChooseByKeys(const Window& window, Qt::Key menu, Qt::Key item)
{
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.Get()));
    QTest::keyClick(window.Get(), menu, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), item);
}

} // namespace fixture
