#pragma once

#include <QWidget>

class QLabel;
class QTreeWidget;

/// The report on broken links under the page (`PictureLinks`). Hidden until there is one.
class LinksPanel : public QWidget
{
    Q_OBJECT

public:
    explicit LinksPanel(QWidget *parent = nullptr);

    /// Columns: unused, description, base name of the page, full path of the page (unseen).
    QTreeWidget &List() const { return *m_list; }
    void SetHeading(const QString &text);

    QSize sizeHint() const override;

private:
    QLabel *m_heading;
    QTreeWidget *m_list;
};
