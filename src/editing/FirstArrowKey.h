#pragma once

class QAbstractItemView;

/// A list that gets the keyboard stands at its first row without choosing it. With this the first arrow key chooses
/// that row instead of passing it by.
void LetFirstArrowKeyChoose(QAbstractItemView &list);
