#pragma once

#include <QString>
#include <QStringList>

class QComboBox;
class QSpinBox;

/// Small helpers for the controls of the dialogs on tables.

/// Ties each entry of a list behind its first, "Default", to a word for the page.
void OfferWords(QComboBox *combo, const QStringList &words);
/// "" for the first entry.
QString ChosenWord(const QComboBox *combo);
void SelectWord(QComboBox *combo, const QString &word);

/// The part of a spin box that takes text gets a name of its own.
void NameEdit(const QSpinBox *box, const QString &name);
