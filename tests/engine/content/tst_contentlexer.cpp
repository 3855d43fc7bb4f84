// The tokens of content.
#include "engine/content/contentlexer.h"

#include <QTest>

class TestContentLexer : public QObject
{
    Q_OBJECT

private slots:
    void lexed_data();
    void lexed();
};

void TestContentLexer::lexed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("tokens");
    const auto row = [](const char *content, const char *tokens) {
        QTest::newRow(content) << QByteArray(content) << QString(tokens);
    };
    row("1 -2 +3 .5 -.5 4. --6 1-2", "1 2- 3 0.5 0.5- 4 6- 1");
    row("/A#20b/C/", "'/A b' '/C' '/'");
    row("/A#2 /B#", "'/A#2' '/B#'");
    row("(a(b)c)(\\n\\\\\\(\\\r\n\\7\\053z)", "(a(b)c) (\n\\(\a+z)");
    row("<414 2><4>", "(AB) (@)");
    row("[<<>>]", "[ << >> ]");
    row("T*'\"f*", "'T*'\"f*'");
    row("q%a(\rQ", "'q' 'Q'");
    row("(", "broken");
    row("<4", "broken");
    row(")", "broken");
    row(">", "broken");
    row("{", "broken");
    row("\x01", "broken");
}

void TestContentLexer::lexed()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, tokens);
    engine::ContentLexer lexer({content.constData(), std::size_t(content.size())});
    QStringList read;
    for (;;) {
        const engine::Token &token = lexer.next();
        const QString text = QString::fromStdString(token.text);
        if (token.kind == engine::Token::End)
            break;
        read << QList<QString>{"",
                               "broken",
                               QString::number(std::abs(token.number)) +
                                   (token.number < 0 ? "-" : ""),
                               "'" + text + "'",
                               "(" + text + ")",
                               "'" + text + "'",
                               "[",
                               "]",
                               "<<",
                               ">>"}[token.kind];
        if (token.kind == engine::Token::Broken)
            break;
    }
    QCOMPARE(read.join(' '), tokens);
}

QTEST_GUILESS_MAIN(TestContentLexer)
#include "tst_contentlexer.moc"
