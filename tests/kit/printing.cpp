// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/printing.h"

#include <QPrinter>

namespace fixture {

namespace {

constexpr QSizeF kLargePaper(3000, 4000);
constexpr int kGreenIndex = 10;
constexpr int kRedHue = 90; // degrees

} // namespace

std::string PrintGraph()
{
    std::string file = plf::Start() + plf::ColorMapEntry(2, kRedHue, 50, 100) + plf::LineIndex(1);
    for (const PrintStroke& stroke : kPrintStrokes) {
        file += plf::Width(stroke.width) +
                plf::Line(stroke.line.x1(), stroke.line.y1(), stroke.line.x2(), stroke.line.y2());
    }
    file += plf::LineIndex(2) + plf::Line(1000, 1000, 1000, 2000) + plf::Text(300, 300, "Text");
    return plf::WithBackground(file, kGreenIndex) + plf::End();
}

void PressPrint(QPrintDialog& dialog)
{
    for (auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("&Print"))
            QTest::mouseClick(button, Qt::LeftButton);
    }
}

void AcceptInto(QPrintDialog& dialog, const std::string& pdf)
{
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("filename"));
    QVERIFY(name != nullptr);
    name->setText(Text(pdf));
    PressPrint(dialog);
}

void PrintTest::HidePrinters()
{
    qputenv("CUPS_SERVER", "/nonexistent");
    QVERIFY(!QPrinter().printerName().size());
}

Paper PrintTest::SetPrinter(const Window& window, const std::string& pdf, int resolution)
{
    Paper paper;
    dialogs->Expect<QPrintDialog>([&](QPrintDialog& dialog) {
        QPrinter& printer = *dialog.printer();
        printer.setOutputFileName(Text(pdf));
        printer.setResolution(resolution);
        printer.setPageSize(QPageSize(kLargePaper, QPageSize::Point));
        paper.resolution = printer.resolution();
        paper.corner = QPointF(printer.pageLayout().paintRectPixels(resolution).topLeft()) *
                       kPointsPerInch / resolution;
        dialog.reject();
    });
    window->view->printIt();
    return paper;
}

PrintedPage PrintTest::Printed()
{
    gpDraw->PrintGraph();
    return ReadPage(Text(Path("page.pdf")));
}

void PrintTest::CheckPage(const std::string& pdf, QPageSize::PageSizeId size,
                          QPageLayout::Orientation orientation)
{
    QSizeF paper = QPageSize::size(size, QPageSize::Point);
    if (orientation == QPageLayout::Landscape)
        paper.transpose();
    const PrintedPage page = ReadPage(Text(pdf));
    QCOMPARE(page.paper, paper);
    QVERIFY(page.lines.size() >= 3); // the area is wider than a portrait page, and so cut
}

} // namespace fixture
