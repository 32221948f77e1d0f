#pragma once

#include <QWidget>

class QListWidget;

/// The Form Builder tab of the left pane: `ListForm2` holds what is made of several elements, `ListForm` the fields.
class FormBuilderPane : public QWidget
{
    Q_OBJECT

public:
    explicit FormBuilderPane(QWidget *parent = nullptr);

private:
    QListWidget *AddList(const QString &name, const QString &heading);

    QListWidget *m_elements; ///< `ListForm2`
    QListWidget *m_fields;   ///< `ListForm`
};
