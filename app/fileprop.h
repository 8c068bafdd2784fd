// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The properties dialog: path, name, size and vector count of the current file.
#pragma once

#include <QDialog>

class QGroupBox;
class QLabel;
class QPushButton;

class FileProp : public QDialog
{
    Q_OBJECT

public:
    /// Creates the widgets, with placeholders for the values that Init sets.
    /// @param name  object name; null means "FileProp"
    explicit FileProp(QWidget* parent, const char* name = nullptr, bool modal = false,
                      Qt::WindowFlags fl = {});

    QGroupBox* groupBox1;
    QLabel* textLabel2;
    QLabel* textLabel3;
    QLabel* textLabel4;
    QLabel* textFilesize;
    QLabel* textLabel5;
    QLabel* textVectorcnt;
    QLabel* textFilenameOrig;
    QLabel* textFilename;
    QPushButton* butOk;

    // The order of the slots is the order of their indices in the meta-object.
public slots:
    /// Shows the present values of the current file.
    virtual void Init();
    /// Ends the dialog with result code 0, like closing it.
    virtual void butOk_clicked();

protected slots:
    /// Sets every caption, and the placeholders.
    virtual void languageChange();

protected:
    void changeEvent(QEvent* event) override;

private:
    template <typename Label> Label* AddLabel(const char* name, int x, int y, int width);
};
