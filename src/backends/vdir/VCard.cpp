#include "VCard.h"

namespace steplets::vdir {

namespace {

// Joins folded lines: a line that starts with a blank or a tab continues the one before.
QStringList unfold(const QString& text)
{
    QStringList out;
    const QStringList physical = text.split(QLatin1Char('\n'));
    for (QString line : physical) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (!out.isEmpty() && !line.isEmpty() && (line[0] == QLatin1Char(' ') || line[0] == QLatin1Char('\t')))
            out.last() += line.mid(1);
        else
            out << line;
    }
    return out;
}

// Index of the first ':' that is not inside a quoted parameter value, or -1.
int valueColon(const QString& line)
{
    bool quoted = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (c == QLatin1Char(':') && !quoted)
            return i;
    }
    return -1;
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

std::optional<VCardLine> parseLine(const QString& line)
{
    const int colon = valueColon(line);
    if (colon <= 0)
        return std::nullopt;
    VCardLine out;
    out.rawValue = line.mid(colon + 1);
    const QStringList head = splitOutsideQuotes(line.left(colon), QLatin1Char(';'));
    QString name = head.first().trimmed();
    const int dot = name.indexOf(QLatin1Char('.'));
    if (dot >= 0) {
        out.group = name.left(dot);
        name = name.mid(dot + 1);
    }
    if (name.isEmpty())
        return std::nullopt;
    out.name = name.toUpper();
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
        out.params << param;
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
    for (const QString& line : unfold(QString::fromUtf8(data))) {
        if (line.trimmed().isEmpty())
            continue;
        const QString upper = line.trimmed().toUpper();
        if (upper == QLatin1String("BEGIN:VCARD")) {
            if (state == After)
                return fail(QStringLiteral("more than one vCard"));
            if (state == Inside)
                ++depth;
            state = Inside;
            if (depth == 0)
                continue;
        } else if (upper == QLatin1String("END:VCARD")) {
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
        const std::optional<VCardLine> parsed = parseLine(line);
        if (!parsed)
            return fail(QStringLiteral("malformed line \"%1\"").arg(line.left(40)));
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
