#include "forms/FormBuilderPane.h"

#include "platform/PaletteIcon.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    const char *Text;
    const char *Icon;
};

constexpr std::array Elements = {
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Form"), "form"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Knowledgebase"), "knowledgebase"},
};

constexpr std::array Fields = {
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Text Box"), "text-box"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Text Area"), "text-area"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Listbox"), "listbox"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Drop-Down List"), "drop-down-list"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Checkbox"), "checkbox"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Radio Button"), "radio-button"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Password Box"), "password-box"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Hidden Field"), "hidden-field"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Image"), "image"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Radio Group"), "radio-group"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Check Group"), "check-group"},
    Row{QT_TRANSLATE_NOOP("FormBuilderPane", "Validation"), "validation"},
};

template <std::size_t Count>
void Fill(QListWidget *list, const std::array<Row, Count> &rows)
{
    for (const Row &row : rows) {
        const QString icon = u":/inkloom/icons/forms/%1.svg"_s.arg(QLatin1StringView(row.Icon));
        new QListWidgetItem(PaletteIcon(icon), FormBuilderPane::tr(row.Text), list);
    }
    list->setCurrentRow(0, QItemSelectionModel::NoUpdate); // where the keys start
}

} // namespace

FormBuilderPane::FormBuilderPane(QWidget *parent) : QWidget(parent)
{
    setObjectName(u"FormBuilderPane"_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->setSpacing(4);
    m_elements = AddList(u"ListForm2"_s, tr("Forms"));
    m_fields = AddList(u"ListForm"_s, tr("Fields"));
    Fill(m_elements, Elements);
    Fill(m_fields, Fields);
    const int row = m_elements->sizeHintForRow(0);
    m_elements->setFixedHeight(row * m_elements->count() + 2 * m_elements->frameWidth());
}

QListWidget *FormBuilderPane::AddList(const QString &name, const QString &heading)
{
    auto *label = new QLabel(heading, this);
    auto *list = new QListWidget(this);
    list->setObjectName(name);
    list->setAccessibleName(heading);
    list->setToolTip(tr("Not available yet"));
    list->setIconSize({16, 16});
    list->setUniformItemSizes(true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout()->addWidget(label);
    layout()->addWidget(list);
    return list;
}
