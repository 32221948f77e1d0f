#pragma once

#include "site/FileListModel.h"
#include "site/FileListView.h"
#include "site/FilePane.h"
#include "site/NoticeLabel.h"
#include "support/EditorRig.h"
#include "support/Files.h"

#include <QListView>
#include <QTemporaryDir>

#include <memory>

/// An editor with its file pane, on a folder with three pages and some other files.
class PaneRig : public EditorRig
{
public:
    explicit PaneRig(FolderReader reader = ListFolder)
    {
        App.FilePattern = PagesPattern + QStringLiteral(";*.jsp");
        for (const QString &name : {QStringLiteral("b.htm"), QStringLiteral("c.htm"), QStringLiteral("d.jsp"),
                                    QStringLiteral("style.css"), QStringLiteral("_inklm_temp.htm")})
            Put(name, SmallPage);
        QDir(Folder()).mkdir(QStringLiteral("sub"));
        PutBytes(Path(QStringLiteral("sub/x.htm")), SmallPage);
        Pane = std::make_unique<FilePane>(*Edit, &Window, std::move(reader));
        Pane->resize(190, 600);
        Pane->show();
        Notices = std::make_unique<NoticeLabel>(*Pane, &Window);
        List = Pane->findChild<FileListView *>(QStringLiteral("ListTopics"));
        Dir = Pane->findChild<QListView *>(QStringLiteral("Dir1"));
        Load(Put(QStringLiteral("a.htm"), SmallPage));
        if (!QTest::qWaitFor([this] { return !Pane->IsReading(); }, 10000))
            qFatal("the pane does not read its folder");
    }

    /// The rows, the selected one in brackets.
    QString Rows() const
    {
        QStringList rows;
        for (int row = 0; row < Pane->ListTopics().rowCount(); ++row) {
            const QString name = Pane->ListTopics().NameOf(row);
            rows.append(row == List->SelectedRow() ? u'[' + name + u']' : name);
        }
        return rows.join(u' ');
    }
    QPoint PlaceOf(const QString &name) const
    {
        const int row = Pane->ListTopics().RowOf(Pane->Folder() + u'/' + name);
        return List->visualRect(List->model()->index(row, 0)).center();
    }
    void Click(const QString &name, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(List->viewport(), button, modifiers, PlaceOf(name));
    }
    void DoubleClick(const QString &name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        Click(name, Qt::LeftButton, modifiers);
        QTest::mouseDClick(List->viewport(), Qt::LeftButton, modifiers, PlaceOf(name));
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(List, key, modifiers);
    }
    QStringList Folders() const
    {
        QStringList rows;
        for (int row = 0; row < Dir->model()->rowCount(); ++row)
            rows.append(Dir->model()->index(row, 0).data().toString());
        return rows;
    }
    QString OpenName() const { return QFileInfo(Page.CurrentFilePath).fileName(); }

    std::unique_ptr<FilePane> Pane;
    std::unique_ptr<NoticeLabel> Notices;
    FileListView *List = nullptr;
    QListView *Dir = nullptr;
};

/// A test of the pane, with a home of its own.
class PaneTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { EditorRig::StartEngine(); }
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", m_home->filePath(QStringLiteral("data")).toUtf8());
        qputenv("XDG_STATE_HOME", m_home->filePath(QStringLiteral("state")).toUtf8());
        Rig();
    }
    void cleanup() { m_rig.reset(); }

protected:
    void Rig(FolderReader reader = ListFolder)
    {
        m_rig.reset();
        m_rig = std::make_unique<PaneRig>(std::move(reader));
    }

    std::unique_ptr<PaneRig> m_rig;
    std::unique_ptr<QTemporaryDir> m_home;
};
