#include "editing/TableControls.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>

void OfferWords(QComboBox *combo, const QStringList &words)
{
    combo->setItemData(0, QString());
    for (int i = 0; i < words.size(); ++i)
        combo->setItemData(i + 1, words[i]);
}

QString ChosenWord(const QComboBox *combo)
{
    return combo->currentData().toString();
}

void SelectWord(QComboBox *combo, const QString &word)
{
    combo->setCurrentIndex(std::max(combo->findData(word), 0));
}

void NameEdit(const QSpinBox *box, const QString &name)
{
    if (auto *edit = box->findChild<QLineEdit *>())
        edit->setObjectName(name);
}
