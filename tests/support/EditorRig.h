#pragma once

#include "document/Editor.h"
#include "document/Recovery.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMessageBoxes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// An editor with the real surface and the real source view in a window, on files in a folder of its own; boxes and
/// dialogs are answered by the test.
class EditorRig
{
public:
    EditorRig() : m_settings(m_private.filePath(QStringLiteral("config")), {})
    {
        App.StartingUp = false;
        App.EngineVersionNew = true;
        App.ProjectDir = m_folder.path();
        Window.resize(800, 600);
        Surface.setParent(&Window);
        Surface.setGeometry(0, 0, 800, 300);
        Source.setParent(&Window);
        Source.setGeometry(0, 300, 800, 300);
        Source.hide();
        Window.show();
        Edit = std::make_unique<Editor>(
            Editor::Parts{App, Page, Selection, Surface, Source, m_settings, Boxes, Dialogs, &Window});
        QObject::connect(Edit.get(), &Editor::TabSelected, &Source,
                         [this](ViewTab tab) { Source.setVisible(tab == ViewTab::HtmlSource); });
    }
    ~EditorRig() { Edit.reset(); }

    /// A page as a save leaves it.
    static inline const QByteArray SmallPage =
        "<html><head>\n<title>First</title>\n</head>\n<body>\n<p>words</p>\n</body>\n</html>\n";
    QString LoadSmallPage()
    {
        const QString path = Put(QStringLiteral("a.htm"), SmallPage);
        Load(path);
        return path;
    }

    /// Before the first test: the engine's own start warns of graphics that an offscreen platform does not have.
    static void StartEngine()
    {
        DesignSurface first;
        first.LoadText({}, {});
        QVERIFY(first.WaitWhileBusy(30000));
    }

    QString Path(const QString &name) const { return m_folder.filePath(name); }
    QString Folder() const { return m_folder.path(); }

    /// A file of the page folder.
    QString Put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    static QByteArray Bytes(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
    }

    bool Load(const QString &path)
    {
        Page.FileToLoad = path;
        return Edit->LoadFile();
    }
    /// Real keys at the caret of the design view.
    void Type(const QString &text)
    {
        for (const QChar c : text)
            QTest::keyClick(Surface.InputWidget(), c.toLatin1());
    }
    void TypeAtStart(const QString &text)
    {
        Surface.InputWidget()->setFocus();
        Surface.CaretToPageStart();
        Type(text);
    }
    /// Real keys in the source view.
    void TypeInSource(const QString &text)
    {
        QWidget *input = Source.findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        QTest::keyClicks(input, text);
    }

    AppState App;
    PageState Page;
    SurfaceState Selection;
    FakeMessageBoxes Boxes;
    FakeFileDialogs Dialogs;
    QWidget Window;
    DesignSurface Surface;
    SourceEditor Source;
    std::unique_ptr<Editor> Edit;

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_private;
    Settings m_settings;
};
