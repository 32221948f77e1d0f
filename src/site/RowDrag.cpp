#include "site/RowDrag.h"

#include "document/Editor.h"
#include "document/PageTitle.h"

#include <QDrag>
#include <QMimeData>
#include <QPointer>
#include <QScopedValueRollback>

namespace {

constexpr int PatienceForTitle = 150;  // milliseconds; a slow folder's page is linked by its name
constexpr int PatienceForDrop = 10000; // milliseconds

} // namespace

RowDrag::RowDrag(Editor &editor, QWidget *source) : QObject(source), m_editor(editor), m_source(source)
{
    m_lost.setSingleShot(true);
    m_lost.setInterval(PatienceForDrop);
    connect(&m_lost, &QTimer::timeout, this, &RowDrag::GiveUp);
    connect(&editor.Surface(), &DesignSurface::ItemDropped, this, &RowDrag::Landed);
}

QString RowDrag::Title(const QString &path)
{
    QString title;
    auto *const reading = &title;
    const auto wanted = std::make_shared<bool>(true);
    m_reading.Start([path, reading, wanted] {
        const QString found = TitleOfFile(path);
        return [found, reading, wanted] {
            if (*wanted)
                *reading = found;
        };
    });
    m_reading.Settle(PatienceForTitle);
    *wanted = false;
    return title;
}

void RowDrag::Run(const QString &path, const QPixmap &picture)
{
    SurfaceState &state = m_editor.Selection();
    if (m_running || state.DragState >= 0)
        return; // the drop before is still on its way
    state.DropMarkup = LinkMarkup(path, m_editor.Page().CurrentFilePath, Title(path));
    state.DropArmed = false;
    state.DragState = 1;
    m_landed = false;

    auto *drag = new QDrag(m_source);
    auto *item = new QMimeData;
    item->setData(QLatin1StringView(DesignSurface::ItemMimeType), path.toUtf8());
    drag->setMimeData(item);
    drag->setPixmap(picture);
    const QPointer<RowDrag> self(this);
    m_running = true;
    const Qt::DropAction action = drag->exec(Qt::CopyAction);
    if (!self)
        return;
    m_running = false;
    if (action == Qt::IgnoreAction)
        GiveUp();
    else if (m_landed)
        Finish();
    else
        m_lost.start();
}

void RowDrag::Landed()
{
    if (m_editor.Selection().DragState < 0)
        return; // somebody else's drag
    m_landed = true;
    if (!m_running && m_lost.isActive())
        Finish();
}

/// Mouse and page have both done their part, in whatever order. The surface's handler puts the link in.
void RowDrag::Finish()
{
    m_lost.stop();
    m_editor.Selection().DragState = -1;
    m_editor.Selection().DropArmed = true;
    emit m_editor.Surface().DisplayChanged();
}

/// The row may have been over the page: without this, the link would go in at the next key stroke.
void RowDrag::GiveUp()
{
    SurfaceState &state = m_editor.Selection();
    state.DragState = -1;
    state.DropArmed = false;
    state.DropMarkup.clear();
}
