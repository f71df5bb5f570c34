#pragma once
// A small vCard reader/writer (RFC 6350, also reading 3.0 and 2.1 style): line folding, text
// escaping, parameters and grouped names. It knows nothing of contacts; ContactCard maps them.
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <optional>

namespace steplets::vdir {

struct VCardParam {
    QString name;           // upper case
    QStringList values;     // unquoted
};

struct VCardLine {
    QString group;          // "item1" of "item1.EMAIL", empty if none
    QString name;           // upper case
    QList<VCardParam> params;
    QString rawValue;       // as in the file, still escaped

    QStringList paramValues(const QString& paramName) const;
    bool hasType(const QString& type) const;          // TYPE=work,voice or bare "WORK" (2.1)

    // One text value, unescaped.
    QString text() const;
    // Structured value (N, ADR, ORG): components split at unescaped ';', each unescaped.
    QStringList components() const;

    static QString escape(const QString& text);
    static QString unescape(const QString& raw);
    static QString joinComponents(const QStringList& parts);
};

class VCard {
public:
    QList<VCardLine> lines;                           // without BEGIN/END

    // The first line of the name (optionally with the given TYPE), or nullptr.
    const VCardLine* first(const QString& name, const QString& type = {}) const;
    QList<const VCardLine*> all(const QString& name) const;
    QString version() const;

    void add(const QString& name, const QString& rawValue, const QList<VCardParam>& params = {});
    void addText(const QString& name, const QString& text, const QList<VCardParam>& params = {});

    // Exactly one BEGIN:VCARD ... END:VCARD with nothing else but blank lines around it.
    // On a fault returns nothing and sets *error to a short reason.
    static std::optional<VCard> parse(const QByteArray& data, QString* error);
    // CRLF line ends, folded at 75 octets without splitting a UTF-8 sequence.
    QByteArray serialize() const;
};

} // namespace steplets::vdir
