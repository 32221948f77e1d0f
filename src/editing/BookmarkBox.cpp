#include "editing/BookmarkBox.h"

void BookmarkBox::showPopup()
{
    emit DropDown();
    QComboBox::showPopup();
}
