#include "VCard.h"
#include <QStringDecoder>
#include <algorithm>

namespace steplets::vdir {

namespace {

// A physical line and the number it has in the file.
struct ByteLine {
    int number;
    QByteArray bytes;
};

// Whether a line's value is quoted-printable (vCard 2.1: ENCODING=QUOTED-PRINTABLE, or the bare
// parameter).
bool isQuotedPrintable(const QByteArray& line)
{
    const qsizetype colon = line.indexOf(':');
    return (colon < 0 ? line : line.left(colon)).toUpper().contains("QUOTED-PRINTABLE");
}

// Joins folded lines before anything is decoded, so a fold inside a character does no harm: a
// line that starts with a blank or a tab continues the one before, and so does the line after a
// quoted-printable value's soft break (a '=' at its end).
QList<ByteLine> unfold(const QByteArray& data)
{
    QList<ByteLine> out;
    bool softBreak = false;
    int number = 0;
    for (QByteArray line : data.split('\n')) {
        ++number;
        if (line.endsWith('\r'))
            line.chop(1);
        if (!out.isEmpty() && softBreak) {
            out.last().bytes.chop(1);
            out.last().bytes += line;
        } else if (!out.isEmpty() && !line.isEmpty() && (line[0] == ' ' || line[0] == '\t')) {
            out.last().bytes += line.mid(1);
        } else {
            out << ByteLine{number, line};
        }
        softBreak = out.last().bytes.endsWith('=') && isQuotedPrintable(out.last().bytes);
    }
    return out;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// "=XX" gives the octet XX; a '=' that starts no such pair stands for itself.
QByteArray decodeQuotedPrintable(const QByteArray& in)
{
    QByteArray out;
    out.reserve(in.size());
    for (qsizetype i = 0; i < in.size(); ++i) {
        if (in[i] == '=' && i + 2 < in.size() && hexDigit(in[i + 1]) >= 0 && hexDigit(in[i + 2]) >= 0) {
            out += static_cast<char>(hexDigit(in[i + 1]) * 16 + hexDigit(in[i + 2]));
            i += 2;
        } else {
            out += in[i];
        }
    }
    return out;
}

// Octets 0x80..0x9F of Windows-1252, which Outlook's vCard 2.1 files use; 0 where it has none.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178};

// The text of a value in its charset; nothing when the octets are not text of that charset.
std::optional<QString> decodeCharset(const QByteArray& bytes, const QString& charset, QString* why)
{
    const QString name = charset.toUpper();
    if (name.isEmpty() || name == QLatin1String("UTF-8") || name == QLatin1String("US-ASCII")) {
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = utf8(bytes);
        if (!utf8.hasError())
            return text;
        *why = QStringLiteral("is not valid UTF-8");
        return std::nullopt;
    }
    if (name == QLatin1String("ISO-8859-1") || name == QLatin1String("LATIN1"))
        return QString::fromLatin1(bytes);
    if (name == QLatin1String("WINDOWS-1252") || name == QLatin1String("CP1252")) {
        QString text;
        for (const char c : bytes) {
            const auto octet = static_cast<unsigned char>(c);
            const char16_t u = octet >= 0x80 && octet < 0xA0 ? kWindows1252[octet - 0x80] : octet;
            if (u == 0) {
                *why = QStringLiteral("holds an octet that windows-1252 does not define");
                return std::nullopt;
            }
            text += QChar(u);
        }
        return text;
    }
    *why = QStringLiteral("is in the charset %1, which is not supported").arg(charset);
    return std::nullopt;
}

// Splits at a separator outside double quotes.
QStringList splitOutsideQuotes(const QString& text, QChar sep)
{
    QStringList parts;
    QString cur;
    bool quoted = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
            cur += c;
        } else if (c == sep && !quoted) {
            parts << cur;
            cur.clear();
        } else {
            cur += c;
        }
    }
    parts << cur;
    return parts;
}

QString unquote(QString v)
{
    if (v.size() >= 2 && v.startsWith(QLatin1Char('"')) && v.endsWith(QLatin1Char('"')))
        v = v.mid(1, v.size() - 2);
    return v;
}

// Index of the first ':' that is not inside a quoted parameter value, or -1.
qsizetype valueColon(const QByteArray& line)
{
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return i;
    }
    return -1;
}

// One unfolded line: name, parameters and the value as text. A quoted-printable value or one
// in another charset is decoded, and its line then carries neither parameter, as it is UTF-8
// text from here on. Nothing when the line is malformed or cannot be decoded (*why says so).
std::optional<VCardLine> parseLine(const ByteLine& in, QString* why)
{
    const qsizetype colon = valueColon(in.bytes);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString headText = utf8(in.bytes.left(std::max<qsizetype>(colon, 0)));
    if (colon <= 0 || utf8.hasError()) {
        *why = QStringLiteral("malformed line %1 \"%2\"").arg(in.number).arg(QString::fromUtf8(in.bytes.left(40)));
        return std::nullopt;
    }
    VCardLine out;
    const QStringList head = splitOutsideQuotes(headText, QLatin1Char(';'));
    QString name = head.first().trimmed();
    const int dot = name.indexOf(QLatin1Char('.'));
    if (dot >= 0) {
        out.group = name.left(dot);
        name = name.mid(dot + 1);
    }
    if (name.isEmpty()) {
        *why = QStringLiteral("malformed line %1 \"%2\"").arg(in.number).arg(headText.left(40));
        return std::nullopt;
    }
    out.name = name.toUpper();
    bool quotedPrintable = false;
    QString charset;
    for (int i = 1; i < head.size(); ++i) {
        const QString& p = head[i];
        const int eq = p.indexOf(QLatin1Char('='));
        VCardParam param;
        if (eq < 0) {                                 // vCard 2.1: a bare type such as WORK
            param.name = QStringLiteral("TYPE");
            param.values << p.trimmed();
        } else {
            param.name = p.left(eq).trimmed().toUpper();
            for (const QString& v : splitOutsideQuotes(p.mid(eq + 1), QLatin1Char(',')))
                param.values << unquote(v);
        }
        const bool isEncoding = (param.name == QLatin1String("ENCODING") || param.name == QLatin1String("TYPE"))
                                && param.values.size() == 1
                                && param.values.first().compare(QLatin1String("QUOTED-PRINTABLE"), Qt::CaseInsensitive) == 0;
        if (isEncoding)
            quotedPrintable = true;
        else if (param.name == QLatin1String("CHARSET"))
            charset = param.values.value(0);
        else
            out.params << param;
    }
    QByteArray value = in.bytes.mid(colon + 1);
    if (quotedPrintable)
        value = decodeQuotedPrintable(value);
    QString problem;
    const std::optional<QString> text = decodeCharset(value, charset, &problem);
    if (!text) {
        *why = QStringLiteral("the value of %1 in line %2 %3").arg(out.name).arg(in.number).arg(problem);
        return std::nullopt;
    }
    out.rawValue = *text;
    // A decoded line break is written as a vCard one, so the line stays one line.
    if (quotedPrintable) {
        out.rawValue.replace(QLatin1String("\r\n"), QLatin1String("\\n"));
        out.rawValue.replace(QLatin1Char('\n'), QLatin1String("\\n"));
        out.rawValue.replace(QLatin1Char('\r'), QLatin1String("\\n"));
    }
    return out;
}

QString paramText(const VCardParam& p)
{
    QStringList vals;
    for (const QString& v : p.values) {
        const bool needsQuotes = v.contains(QLatin1Char(':')) || v.contains(QLatin1Char(';'))
                                 || v.contains(QLatin1Char(','));
        vals << (needsQuotes ? QLatin1Char('"') + v + QLatin1Char('"') : v);
    }
    return p.name + QLatin1Char('=') + vals.join(QLatin1Char(','));
}

// Folds one content line at 75 octets, never inside a UTF-8 sequence.
void appendFolded(QByteArray& out, const QByteArray& line)
{
    int start = 0;
    int limit = 75;
    while (line.size() - start > limit) {
        int cut = start + limit;
        while (cut > start && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80)
            --cut;
        out += line.mid(start, cut - start);
        out += "\r\n ";
        start = cut;
        limit = 74;                                   // the leading blank counts
    }
    out += line.mid(start);
    out += "\r\n";
}

} // namespace

QStringList VCardLine::paramValues(const QString& paramName) const
{
    QStringList out;
    for (const VCardParam& p : params)
        if (p.name == paramName)
            out += p.values;
    return out;
}

bool VCardLine::hasType(const QString& type) const
{
    for (const QString& v : paramValues(QStringLiteral("TYPE")))
        for (const QString& t : v.split(QLatin1Char(',')))
            if (t.compare(type, Qt::CaseInsensitive) == 0)
                return true;
    return false;
}

QString VCardLine::text() const { return unescape(rawValue); }

QStringList VCardLine::components() const
{
    QStringList parts;
    QString cur;
    for (int i = 0; i < rawValue.size(); ++i) {
        const QChar c = rawValue[i];
        if (c == QLatin1Char('\\') && i + 1 < rawValue.size()) {
            cur += c;
            cur += rawValue[++i];
        } else if (c == QLatin1Char(';')) {
            parts << unescape(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    parts << unescape(cur);
    return parts;
}

QString VCardLine::escape(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\': out += QLatin1String("\\\\"); break;
        case ',': out += QLatin1String("\\,"); break;
        case ';': out += QLatin1String("\\;"); break;
        case '\n': out += QLatin1String("\\n"); break;
        case '\r': break;
        default: out += c;
        }
    }
    return out;
}

QString VCardLine::unescape(const QString& raw)
{
    QString out;
    out.reserve(raw.size());
    for (int i = 0; i < raw.size(); ++i) {
        if (raw[i] == QLatin1Char('\\') && i + 1 < raw.size()) {
            const QChar n = raw[++i];
            out += (n == QLatin1Char('n') || n == QLatin1Char('N')) ? QChar(QLatin1Char('\n')) : n;
        } else {
            out += raw[i];
        }
    }
    return out;
}

QString VCardLine::joinComponents(const QStringList& parts)
{
    QStringList escaped;
    for (const QString& p : parts)
        escaped << escape(p);
    return escaped.join(QLatin1Char(';'));
}

const VCardLine* VCard::first(const QString& name, const QString& type) const
{
    for (const VCardLine& l : lines)
        if (l.name == name && (type.isEmpty() || l.hasType(type)))
            return &l;
    return nullptr;
}

QList<const VCardLine*> VCard::all(const QString& name) const
{
    QList<const VCardLine*> out;
    for (const VCardLine& l : lines)
        if (l.name == name)
            out << &l;
    return out;
}

QString VCard::version() const
{
    const VCardLine* v = first(QStringLiteral("VERSION"));
    return v ? v->rawValue.trimmed() : QString();
}

void VCard::add(const QString& name, const QString& rawValue, const QList<VCardParam>& params)
{
    VCardLine l;
    l.name = name;
    l.params = params;
    l.rawValue = rawValue;
    lines << l;
}

void VCard::addText(const QString& name, const QString& text, const QList<VCardParam>& params)
{
    add(name, VCardLine::escape(text), params);
}

std::optional<VCard> VCard::parse(const QByteArray& data, QString* error)
{
    auto fail = [error](const QString& why) -> std::optional<VCard> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    VCard card;
    enum { Before, Inside, After } state = Before;
    int depth = 0;                                    // nested cards (AGENT in 2.1) are kept as lines
    const QByteArray text = data.startsWith("\xef\xbb\xbf") ? data.mid(3) : data;
    for (const ByteLine& line : unfold(text)) {
        const QByteArray upper = line.bytes.trimmed().toUpper();
        if (upper.isEmpty())
            continue;
        if (upper == "BEGIN:VCARD") {
            if (state == After)
                return fail(QStringLiteral("more than one vCard"));
            if (state == Inside)
                ++depth;
            state = Inside;
            if (depth == 0)
                continue;
        } else if (upper == "END:VCARD") {
            if (state != Inside)
                return fail(QStringLiteral("END:VCARD without BEGIN:VCARD"));
            if (depth == 0) {
                state = After;
                continue;
            }
            --depth;
        } else if (state != Inside) {
            return fail(QStringLiteral("text outside BEGIN:VCARD/END:VCARD"));
        }
        QString why;
        const std::optional<VCardLine> parsed = parseLine(line, &why);
        if (!parsed)
            return fail(why);
        card.lines << *parsed;
    }
    if (state == Before)
        return fail(QStringLiteral("no vCard"));
    if (state == Inside)
        return fail(QStringLiteral("truncated vCard: END:VCARD is missing"));
    return card;
}

QByteArray VCard::serialize() const
{
    QByteArray out = "BEGIN:VCARD\r\n";
    for (const VCardLine& l : lines) {
        QString text = l.group.isEmpty() ? l.name : l.group + QLatin1Char('.') + l.name;
        for (const VCardParam& p : l.params)
            text += QLatin1Char(';') + paramText(p);
        text += QLatin1Char(':') + l.rawValue;
        appendFolded(out, text.toUtf8());
    }
    out += "END:VCARD\r\n";
    return out;
}

} // namespace steplets::vdir
