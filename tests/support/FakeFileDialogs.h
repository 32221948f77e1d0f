#pragma once

#include "platform/FileDialogs.h"

#include <QList>
#include <QPrinter>
#include <QTest>

#include <functional>
#include <utility>
#include <variant>

/// Answers file and colour dialogs by the list: each `Expect...` announces one, in the order of their coming; nothing
/// stands for Cancel. The test fails on a dialog that nobody announced, on one of another kind than announced, and on
/// an announced one that never came. Make one a test function; a longer lived one needs `Verify` in cleanup().
class FakeFileDialogs : public FileDialogs
{
public:
    ~FakeFileDialogs() override { Verify(); }

    void ExpectOpen(std::optional<QString> path) { m_expected.append(OpenAnswer{std::move(path)}); }
    void ExpectSave(std::optional<QString> path) { m_expected.append(SaveAnswer{std::move(path)}); }
    /// Prints into this file, as PDF.
    void ExpectPrint(std::optional<QString> file) { m_expected.append(PrintAnswer{std::move(file)}); }
    void ExpectColor(std::optional<QColor> color) { m_expected.append(ColorAnswer{color}); }

    std::optional<QString> Open(QWidget *, const Request &request) override
    {
        Requests.append(request);
        return Next<OpenAnswer>("open " + request.Title.toUtf8()).Chosen;
    }

    std::optional<QString> Save(QWidget *, const Request &request) override
    {
        Requests.append(request);
        return Next<SaveAnswer>("save " + request.Title.toUtf8()).Chosen;
    }

    std::optional<QColor> Color(QWidget *, const QColor &start) override
    {
        StartColors.append(start);
        return Next<ColorAnswer>("colour " + start.name().toUtf8()).Chosen;
    }

    bool Print(QWidget *, QPrinter &printer) override
    {
        const std::optional<QString> file = Next<PrintAnswer>("print " + printer.docName().toUtf8()).File;
        if (file) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(*file);
        }
        return file.has_value();
    }

    /// All announced dialogs have come; forgets those that have not.
    void Verify()
    {
        if (const qsizetype missing = std::exchange(m_expected, {}).size())
            OnFault(QStringLiteral("%1 announced file or colour dialogs never came").arg(missing));
    }

    QList<Request> Requests;   ///< of Open and Save, in order
    QList<QColor> StartColors; ///< of Color, in order
    /// What a fault does; fails the running test unless replaced.
    std::function<void(const QString &)> OnFault = [](const QString &fault) {
        QTest::qFail(qPrintable(fault), __FILE__, __LINE__);
    };

private:
    struct OpenAnswer
    {
        std::optional<QString> Chosen;
    };
    struct SaveAnswer
    {
        std::optional<QString> Chosen;
    };
    struct ColorAnswer
    {
        std::optional<QColor> Chosen;
    };
    struct PrintAnswer
    {
        std::optional<QString> File;
    };

    template <typename Answer>
    Answer Next(const QByteArray &dialog)
    {
        if (m_expected.isEmpty()) {
            OnFault(QStringLiteral("Nobody announced the dialog: ") + QString::fromUtf8(dialog));
            return {};
        }
        const auto next = m_expected.takeFirst();
        if (const auto *answer = std::get_if<Answer>(&next))
            return *answer;
        OnFault(QStringLiteral("Another dialog was announced than this: ") + QString::fromUtf8(dialog));
        return {};
    }

    QList<std::variant<OpenAnswer, SaveAnswer, ColorAnswer, PrintAnswer>> m_expected;
};
