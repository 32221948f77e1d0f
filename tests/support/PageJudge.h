#pragma once

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QString>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>

/// Tells whether two page texts are the same document to a browser.
class PageJudge
{
public:
    PageJudge()
    {
        m_page.settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
        QEventLoop loop;
        QObject::connect(&m_page, &QWebEnginePage::loadFinished, &loop, &QEventLoop::quit);
        m_page.setHtml(QStringLiteral("<html></html>"));
        loop.exec();
    }

    /// Where two pages, parsed afresh, part: elements, attributes in any order, text. "" when they are the same
    /// document.
    QString FirstDifference(const QString &before, const QString &after)
    {
        const QByteArray texts = QJsonDocument(QJsonArray{before, after}).toJson(QJsonDocument::Compact);
        QString difference = QStringLiteral("no answer");
        QEventLoop loop;
        m_page.runJavaScript(u'(' + QString::fromUtf8(Script) + QStringLiteral(")(...") + QString::fromUtf8(texts) +
                                 u')',
                             QWebEngineScript::ApplicationWorld, [&](const QVariant &answer) {
                                 difference = answer.toString();
                                 loop.quit();
                             });
        loop.exec();
        return difference;
    }

private:
    static constexpr const char *Script = R"js((a, b) => {
  const flat = (text) => {
    const out = [];
    const walk = (node) => {
      for (let child = node.firstChild; child; child = child.nextSibling) {
        if (child.nodeType === Node.ELEMENT_NODE) {
          out.push("<" + child.localName + " " + [...child.attributes].map((x) => x.name + "=" + x.value).sort().join(" ") + ">");
          walk(child.content || child);
          out.push("</>");
        } else if (child.nodeType === Node.TEXT_NODE) {
          if (out.length && out[out.length - 1].startsWith("T:"))
            out[out.length - 1] += child.data;
          else
            out.push("T:" + child.data);
        }
      }
    };
    walk(new DOMParser().parseFromString(text, "text/html"));
    return out;
  };
  const x = flat(a), y = flat(b);
  for (let i = 0; i < Math.max(x.length, y.length); ++i)
    if (x[i] !== y[i])
      return JSON.stringify(x.slice(Math.max(0, i - 2), i + 3)) + " became " + JSON.stringify(y.slice(Math.max(0, i - 2), i + 3));
  return "";
})js";

    QWebEngineProfile m_profile;
    QWebEnginePage m_page{&m_profile};
};
