#pragma once
// Takes the desktop's place in opening file URLs while it lives: what the program asks to open
// is recorded, and nothing opens.
#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

namespace steplets::test {

class UrlRecorder : public QObject {
    Q_OBJECT
public:
    UrlRecorder() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~UrlRecorder() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

} // namespace steplets::test
