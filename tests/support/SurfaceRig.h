#pragma once

#include "platform/surface/DesignSurface.h"
#include "support/RunInPage.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// A real design surface in a window, whose page and selection are written as text: "<p>a[b]c</p>" is a paragraph with
/// the b selected, "<p>ab|c</p>" one with a caret. Markers stand in text or between elements where text may stand.
class SurfaceRig
{
public:
    SurfaceRig()
    {
        Surface.resize(800, 600);
        Surface.show();
        Surface.LoadText(QStringLiteral("<html><body><p>x</p></body></html>"), PagePath());
        if (!Surface.WaitWhileBusy(30000))
            qFatal("the engine does not start");
        Surface.activateWindow();
        Surface.setFocus();
    }

    /// A page of this body in a folder of its own (m_folder); the history is empty and the page clean.
    void SetBody(const QString &marked, const QString &head = {})
    {
        const QVariant places = LoadAndRun(marked, head, QStringLiteral("findMarkers()"));
        QString plain = marked;
        plain.remove(u'[').remove(u']').remove(u'|');
        LoadAndRun(plain, head, QStringLiteral("select('%1')").arg(places.toString()));
        Learn();
    }
    /// After a script of the test moved the selection: the surface hears of that late, but asks again after any key.
    void Learn()
    {
        QTest::keyClick(Surface.InputWidget(), Qt::Key_F12);
        Settle();
    }
    /// The body as the engine writes it, with the selection marked.
    QString Body() { return Run(QStringLiteral("marked()")).toString(); }
    /// The same without marks.
    QString PlainBody() { return Run(QStringLiteral("document.body.innerHTML")).toString(); }

    /// The body is what a parser makes of its own text: what is saved is what is seen.
    bool ParsesBack()
    {
        // A parser drops a line end at the start of these; the host writes it twice.
        return Run(QStringLiteral(
                       "(() => { const doctype = document.compatMode === 'CSS1Compat' ? '<!DOCTYPE html>' : '';"
                       "const text = document.body.innerHTML;"
                       "const written = text.replace(/<(pre|listing|textarea)([^>]*)>\\n/g, '<$1$2>\\n\\n');"
                       "return new DOMParser().parseFromString(doctype + '<body>' + written, 'text/html')"
                       ".body.innerHTML === text; })()"))
            .toBool();
    }

    /// Real keys; waits until the page has worked on them.
    void Type(const QString &text)
    {
        for (const QChar c : text)
            QTest::keyClick(Surface.InputWidget(), c.toLatin1());
        Settle();
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(Surface.InputWidget(), key, modifiers);
        Settle();
    }
    /// A real click at the middle of the first element that the selector finds, or `offset` from its top left corner.
    void Click(const QString &selector, QPoint offset = {-1, -1}, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(Surface.InputWidget(), button, modifiers, PlaceOf(selector, offset));
        Settle();
    }
    /// In pixels of the surface's input widget.
    QPoint PlaceOf(const QString &selector, QPoint offset = {-1, -1})
    {
        const QRect rect = RectOf(selector);
        return offset.x() < 0 ? rect.center() : rect.topLeft() + offset;
    }
    QRect RectOf(const QString &selector)
    {
        const QVariantList r =
            Run(QStringLiteral("(() => { const r = document.querySelector(%1).getBoundingClientRect();"
                               "return [r.left, r.top, r.width, r.height]; })()")
                    .arg(Literal(selector)))
                .toList();
        return r.size() == 4 ? QRect(r[0].toInt(), r[1].toInt(), r[2].toInt(), r[3].toInt()) : QRect();
    }

    /// Undoes until nothing is left to undo; how many steps that took.
    int UndoAll() { return Repeat(DECMD_UNDO); }
    int RedoAll() { return Repeat(DECMD_REDO); }

    /// Every input up to now has been worked on.
    void Settle() { Surface.IsDirty(); }

    /// The value of a script in the world of our page scripts.
    QVariant Run(const QString &script) { return RunInPage(Surface, QString::fromUtf8(Helpers) + script); }

    QString Path(const QString &name) const { return m_folder.filePath(name); }
    QString PagePath() const { return Path(QStringLiteral("page.htm")); }
    static QString Literal(QString text)
    {
        return u'"' + text.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\"")) + u'"';
    }

    DesignSurface Surface;

private:
    QVariant LoadAndRun(const QString &body, const QString &head, const QString &script)
    {
        Surface.LoadText(QStringLiteral("<!DOCTYPE html>\n<html><head><title>t</title>%1</head><body>%2</body></html>")
                             .arg(head, body),
                         PagePath());
        if (!Surface.WaitWhileBusy(30000))
            qFatal("the page does not load");
        return Run(script);
    }
    int Repeat(Decmd command)
    {
        int steps = 0;
        while (steps < 100000 && Surface.QueryStatus(command) >= DECMDF_ENABLED) {
            Surface.ExecCommand(command);
            ++steps;
        }
        return steps;
    }

    // Places are paths of child numbers from the body, with the offset as the last number.
    static constexpr const char *Helpers = R"js(
      var pathOf = (node, offset) => {
        const path = [offset];
        for (let n = node; n !== document.body; n = n.parentNode)
          path.unshift([...n.parentNode.childNodes].indexOf(n));
        return path;
      };
      var placeOf = (root, path) => {
        let node = root;
        for (const i of path.slice(0, -1)) node = node.childNodes[i];
        return [node, path[path.length - 1]];
      };
      var findMarkers = () => {
        const found = {};
        const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
        for (let node = walker.nextNode(); node; node = walker.nextNode())
          for (let at; (at = node.data.search(/[[\]|]/)) >= 0;) {
            const mark = node.data[at];
            node.deleteData(at, 1);
            found[mark] = [node, at];
          }
        const out = {};
        for (const mark in found) {
          let [node, at] = found[mark];
          if (!node.length) { at = [...node.parentNode.childNodes].indexOf(node); node = node.parentNode; }
          // Empty text nodes are not there when the page is parsed without its marks.
          if (node.nodeType !== 3) at -= [...node.childNodes].slice(0, at).filter((n) => n.nodeType === 3 && !n.length).length;
          const path = [at];
          for (let n = node; n !== document.body; n = n.parentNode)
            path.unshift([...n.parentNode.childNodes].filter((m) => m.nodeType !== 3 || m.length).indexOf(n));
          out[mark] = path;
        }
        return JSON.stringify(out);
      };
      var select = (json) => {
        const places = JSON.parse(json), s = document.getSelection();
        if (places["|"]) s.collapse(...placeOf(document.body, places["|"]));
        else if (places["["] && places["]"])
          s.setBaseAndExtent(...placeOf(document.body, places["["]), ...placeOf(document.body, places["]"]));
      };
      var marked = () => {
        const s = document.getSelection();
        const box = document.body.cloneNode(true);
        if (!s.rangeCount || !document.body.contains(s.anchorNode)) return box.innerHTML;
        const r = s.getRangeAt(0);
        const put = (container, offset, mark) => {
          const [node, at] = placeOf(box, pathOf(container, offset));
          if (node.nodeType === 3) node.insertData(at, mark);
          else node.insertBefore(document.createTextNode(mark), node.childNodes[at] || null);
        };
        if (r.collapsed) put(r.startContainer, r.startOffset, "|");
        else { put(r.endContainer, r.endOffset, "]"); put(r.startContainer, r.startOffset, "["); }
        return box.innerHTML;
      };
    )js";

    QTemporaryDir m_folder;
};
