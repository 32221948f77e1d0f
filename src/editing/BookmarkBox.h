#pragma once

#include <QComboBox>

/// A box whose list is made anew each time it drops.
class BookmarkBox : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void showPopup() override;

signals:
    /// The list is about to be seen.
    void DropDown();
};
