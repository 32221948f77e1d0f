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
    /// Opens a page "a.htm" of this text, in which "[" and "]" stand around what is to be selected or "|" is the caret;
    /// gives the text without them.
    QString OpenMarked(QString page)
    {
        const bool caret = page.contains(u'|');
        const qsizetype from = page.indexOf(caret ? u'|' : u'[');
        const qsizetype length = caret ? 0 : page.indexOf(u']') - from - 1;
        page.remove(u'|').remove(u'[').remove(u']');
        if (!Load(Put(QStringLiteral("a.htm"), page.toUtf8())) || !Surface.WaitWhileBusy() ||
            (from >= 0 && !Surface.SelectInText(page, {from + 1, length})))
            qFatal("cannot open and select: %s", qPrintable(page));
        return page;
    }
    /// The file "a.htm" after a save that leaves what did not change as its author wrote it.
    QByteArray SavedAsWritten()
    {
        const auto preserve = [this](bool on) {
            App.PreserveHtml = App.ExactSource = on;
            Surface.SetSourceCodePreservation(on);
        };
        preserve(true);
        const bool saved = Edit->SaveHTML(Path(QStringLiteral("a.htm")));
        preserve(false);
        return saved ? Bytes(Path(QStringLiteral("a.htm"))) : QByteArray("(not saved)");
    }
    /// Undoes until nothing is left to undo; how many steps that took.
    int UndoAll()
    {
        int steps = 0;
        for (; Surface.QueryStatus(DECMD_UNDO) >= DECMDF_ENABLED; ++steps)
            Surface.ExecCommand(DECMD_UNDO);
        return steps;
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
