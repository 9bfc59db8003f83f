#include "JetSql.h"

#include <QVector>

namespace {

enum class Tok { Space, Word, Number, String, Ident, Punct };

struct Token {
    Tok kind;
    QString text;
};

QString quoteString(const QString& body)
{
    QString out = body;
    out.replace(u'\'', QStringLiteral("''"));
    return u'\'' + out + u'\'';
}

QVector<Token> tokenize(const QString& s)
{
    QVector<Token> out;
    int i = 0;
    const int n = int(s.size());
    while (i < n) {
        const QChar c = s.at(i);
        if (c.isSpace()) {
            int j = i;
            while (j < n && s.at(j).isSpace())
                ++j;
            out.push_back({Tok::Space, s.mid(i, j - i)});
            i = j;
        } else if (c == u'\'') {
            int j = i + 1;
            while (j < n) {
                if (s.at(j) == u'\'') {
                    if (j + 1 < n && s.at(j + 1) == u'\'') {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            out.push_back({Tok::String, s.mid(i, qMin(j + 1, n) - i)});
            i = j + 1;
        } else if (c == u'"') {
            // Jet reads a double-quoted text as a literal, never a name.
            int j = i + 1;
            QString body;
            while (j < n) {
                if (s.at(j) == u'"') {
                    if (j + 1 < n && s.at(j + 1) == u'"') {
                        body += u'"';
                        j += 2;
                        continue;
                    }
                    break;
                }
                body += s.at(j++);
            }
            out.push_back({Tok::String, quoteString(body)});
            i = j + 1;
        } else if (c == u'[') {
            const int j = int(s.indexOf(u']', i + 1));
            const int end = j < 0 ? n : j;
            QString name = s.mid(i + 1, end - i - 1);
            name.replace(u'"', QStringLiteral("\"\""));
            out.push_back({Tok::Ident, u'"' + name + u'"'});
            i = end + 1;
        } else if (c.isLetter() || c == u'_') {
            int j = i;
            while (j < n && (s.at(j).isLetterOrNumber() || s.at(j) == u'_'))
                ++j;
            out.push_back({Tok::Word, s.mid(i, j - i)});
            i = j;
        } else if (c.isDigit()) {
            int j = i;
            while (j < n && (s.at(j).isDigit() || s.at(j) == u'.'))
                ++j;
            out.push_back({Tok::Number, s.mid(i, j - i)});
            i = j;
        } else {
            out.push_back({Tok::Punct, QString(c)});
            ++i;
        }
    }
    return out;
}

bool isWord(const Token& t, const char* word)
{
    return t.kind == Tok::Word && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

// The meaningful tokens (no spaces), as indices into the token list.
QVector<int> significant(const QVector<Token>& toks)
{
    QVector<int> out;
    for (int i = 0; i < toks.size(); ++i)
        if (toks.at(i).kind != Tok::Space)
            out.push_back(i);
    return out;
}

QString join(const QVector<Token>& toks, int from = 0, int to = -1)
{
    QString out;
    if (to < 0)
        to = int(toks.size());
    for (int i = from; i < to; ++i)
        out += toks.at(i).text;
    return out;
}

QString stripSemicolon(QString sql)
{
    sql = sql.trimmed();
    while (sql.endsWith(u';'))
        sql.chop(1);
    return sql.trimmed();
}

// Column types: Jet's names to SQLite affinities; text compares without case,
// as Jet's does.
void translateTypes(QVector<Token>& toks)
{
    for (int i = 0; i < toks.size(); ++i) {
        Token& t = toks[i];
        if (t.kind != Tok::Word)
            continue;
        const QString up = t.text.toUpper();
        if (up == u"COUNTER" || up == u"AUTOINCREMENT" || up == u"LONG" || up == u"INTEGER" ||
            up == u"SHORT" || up == u"BYTE" || up == u"BIT" || up == u"YESNO") {
            t.text = QStringLiteral("INTEGER");
        } else if (up == u"DOUBLE" || up == u"SINGLE" || up == u"CURRENCY" || up == u"FLOAT") {
            t.text = QStringLiteral("REAL");
        } else if (up == u"TEXT" || up == u"VARCHAR" || up == u"CHAR" || up == u"MEMO" ||
                   up == u"LONGTEXT" || up == u"DATETIME") {
            // TEXT(n): keep the size, then the collation after it.
            int j = i + 1;
            while (j < toks.size() && toks.at(j).kind == Tok::Space)
                ++j;
            t.text = QStringLiteral("TEXT");
            if (j < toks.size() && toks.at(j).text == u"(") {
                int k = j;
                while (k < toks.size() && toks.at(k).text != u")")
                    ++k;
                if (k < toks.size())
                    toks[k].text += QStringLiteral(" COLLATE NOCASE");
            } else {
                t.text += QStringLiteral(" COLLATE NOCASE");
            }
        }
    }
}

// Splits the column list of ALTER TABLE t ADD [COLUMN] a T, b T at the commas
// that stand outside parentheses.
QStringList splitColumns(const QVector<Token>& toks, int from)
{
    QStringList out;
    QString current;
    int depth = 0;
    for (int i = from; i < toks.size(); ++i) {
        const QString& t = toks.at(i).text;
        if (t == u"(")
            ++depth;
        else if (t.startsWith(u')'))
            --depth;
        if (t == u"," && depth == 0) {
            out << stripSemicolon(current);
            current.clear();
            continue;
        }
        current += t;
    }
    if (!stripSemicolon(current).isEmpty())
        out << stripSemicolon(current);
    return out;
}

JetTranslation translateAlter(QVector<Token>& toks, const QVector<int>& sig)
{
    JetTranslation out;
    // ALTER TABLE name ...
    if (sig.size() < 4)
        return {{join(toks)}, false};
    const QString table = toks.at(sig.at(2)).text;
    const Token& verb = toks.at(sig.at(3));
    if (isWord(verb, "ALTER"))
        return out; // column sizes: SQLite does not bound text
    if (!isWord(verb, "ADD"))
        return {{join(toks)}, false};
    int listStart = sig.at(3) + 1;
    if (sig.size() > 4 && isWord(toks.at(sig.at(4)), "COLUMN"))
        listStart = sig.at(4) + 1;
    translateTypes(toks);
    const QStringList columns = splitColumns(toks, listStart);
    for (const QString& column : columns)
        out.statements << QStringLiteral("ALTER TABLE %1 ADD COLUMN %2").arg(table, column);
    out.atomic = columns.size() > 1;
    return out;
}

void translateTop(QVector<Token>& toks, const QVector<int>& sig)
{
    int at = 1;
    if (sig.size() > 2 && isWord(toks.at(sig.at(1)), "DISTINCT"))
        at = 2;
    if (sig.size() <= at + 1 || !isWord(toks.at(sig.at(at)), "TOP") ||
        toks.at(sig.at(at + 1)).kind != Tok::Number)
        return;
    const QString count = toks.at(sig.at(at + 1)).text;
    toks[sig.at(at)].text.clear();
    toks[sig.at(at + 1)].text.clear();
    // the statement ends with LIMIT, after any ORDER BY
    int last = int(toks.size()) - 1;
    while (last >= 0 && (toks.at(last).kind == Tok::Space || toks.at(last).text == u";")) {
        toks[last].text.clear();
        --last;
    }
    toks.push_back({Tok::Word, QStringLiteral(" LIMIT ") + count});
}

} // namespace

JetTranslation TranslateJetSql(const QString& jet)
{
    QVector<Token> toks = tokenize(jet);
    const QVector<int> sig = significant(toks);
    if (sig.isEmpty())
        return {};

    // & joins texts in Jet; SQLite spells it ||.
    for (Token& t : toks)
        if (t.kind == Tok::Punct && t.text == u"&")
            t.text = QStringLiteral("||");

    // LEFT and RIGHT are join words to SQLite: call Jet's functions by names
    // of their own.
    for (int k = 0; k + 1 < sig.size(); ++k) {
        Token& t = toks[sig.at(k)];
        if ((isWord(t, "LEFT") || isWord(t, "RIGHT")) && toks.at(sig.at(k + 1)).text == u"(")
            t.text = QStringLiteral("jet_") + t.text.toLower();
    }

    const Token& first = toks.at(sig.at(0));
    if (isWord(first, "ALTER") && sig.size() > 1 && isWord(toks.at(sig.at(1)), "TABLE"))
        return translateAlter(toks, sig);
    if (isWord(first, "CREATE"))
        translateTypes(toks);
    if (isWord(first, "DELETE") && sig.size() > 1 && toks.at(sig.at(1)).text == u"*")
        toks[sig.at(1)].text.clear();
    if (isWord(first, "SELECT"))
        translateTop(toks, sig);
    return {{join(toks)}, false};
}
