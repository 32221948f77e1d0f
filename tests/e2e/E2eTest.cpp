#include "E2eTest.h"

using namespace Qt::StringLiterals;

void E2eTest::init()
{
    m_home = std::make_unique<PrivateHome>();
    m_program = std::make_unique<RunningProgram>(*Display, *m_home);
}

void E2eTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        const QString row = QString::fromUtf8(QTest::currentDataTag()).replace(QRegularExpression(u"\\W+"_s), u"-"_s);
        const QString picture = QStringLiteral(INKLOOM_SCREENS "/failed-%1-%2.png")
                                    .arg(QLatin1StringView(QTest::currentTestFunction()), row);
        QDir().mkpath(QStringLiteral(INKLOOM_SCREENS));
        Display->Picture().save(picture);
        qInfo().noquote() << "The screen as it was:" << picture << "\nWindows:" << m_program->Titles()
                          << "\nLast message box:" << m_program->BoxText() << "\n"
                          << m_program->Output();
    }
    m_program.reset();
    m_home.reset();
}

QByteArray E2eTest::PageBytes(const QString &title, const QByteArray &more)
{
    return "<html><head><title>" + title.toUtf8() + "</title></head>\n<body>\n" + MarkedParagraph.data() + "\n" + more +
           "\n</body></html>\n";
}

QString E2eTest::PutPage(const QString &name, const QByteArray &more)
{
    const QString path = m_home->FilePath(name);
    return PutBytes(path, PageBytes(QFileInfo(name).completeBaseName(), more)) ? path : QString();
}

bool E2eTest::WaitForBytes(const QString &path, const QByteArray &words)
{
    return QTest::qWaitFor([&] { return BytesOf(path).contains(words); }, RunningProgram::Patience);
}

QStringList E2eTest::PagesIn(const QString &folder)
{
    QStringList names = EntriesOf(folder);
    names.removeAll(u"iltb.tmp"_s);
    return names;
}

bool E2eTest::ClickAndType(const QString &words)
{
    return m_program->ClickBehind(Mark) && Display->Type(words);
}

bool E2eTest::Quit()
{
    if (!Display->Press({u"ctrl+q"_s}) || !m_program->WaitForEnd()) {
        qWarning("The program does not end.");
        return false;
    }
    if (!m_program->EndedWell())
        qWarning().noquote() << "The program did not end well:" << m_program->HowItEnded();
    return m_program->EndedWell();
}
