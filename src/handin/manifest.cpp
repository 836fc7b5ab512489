#include "manifest.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace handin {

QString drawingName(int number)
{
    return QStringLiteral("drawing-%1.png").arg(number);
}

QByteArray sha256Hex(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

bool isPlainEntryName(const QString &name)
{
    if (name.isEmpty() || name.startsWith(u'.') || name.toUtf8().size() > 120)
        return false;
    for (const QChar c : name) {
        if (c == u'/' || c == u'\\' || c.category() == QChar::Other_Control)
            return false;
    }
    return true;
}

QString programVersion()
{
#ifdef TREMIDIA_VERSION
    return QStringLiteral(TREMIDIA_VERSION);
#else
    return QStringLiteral("0");
#endif
}

Manifest Manifest::describe(const Pupil &pupil, const Place &place, const QDateTime &time,
    const QString &version, const QList<File> &files)
{
    Manifest manifest;
    manifest.pupil = pupil;
    manifest.place = place;
    manifest.time = time;
    manifest.version = version;
    for (const File &file : files)
        manifest.files.append({file.name, file.data.size(), sha256Hex(file.data)});
    return manifest;
}

namespace {

QJsonObject titled(qint32 id, const QString &title)
{
    return QJsonObject{{QStringLiteral("id"), id}, {QStringLiteral("title"), title}};
}

bool readTitled(const QJsonValue &value, qint32 &id, QString &title)
{
    if (!value.isObject())
        return false;
    const QJsonObject object = value.toObject();
    const QJsonValue idValue = object.value(QStringLiteral("id"));
    const QJsonValue titleValue = object.value(QStringLiteral("title"));
    if (!idValue.isDouble() || !titleValue.isString())
        return false;
    const double number = idValue.toDouble();
    if (number != static_cast<double>(static_cast<qint32>(number)))
        return false;
    id = static_cast<qint32>(number);
    title = titleValue.toString();
    return true;
}

bool isHex64(const QString &text)
{
    if (text.size() != 64)
        return false;
    for (const QChar c : text) {
        if (!((c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f')))
            return false;
    }
    return true;
}

} // namespace

QByteArray Manifest::toJson() const
{
    QJsonArray fileArray;
    for (const ManifestEntry &entry : files) {
        fileArray.append(QJsonObject{{QStringLiteral("name"), entry.name},
            {QStringLiteral("size"), static_cast<double>(entry.size)},
            {QStringLiteral("sha256"), QString::fromLatin1(entry.sha256)}});
    }
    const QJsonObject root{
        {QStringLiteral("format"), format},
        {QStringLiteral("pupil"), pupil.name},
        {QStringLiteral("class"), pupil.className},
        {QStringLiteral("content"), place.contentTitle},
        {QStringLiteral("theme"), titled(place.themeID, place.themeTitle)},
        {QStringLiteral("scenario"), titled(place.scenarioID, place.scenarioTitle)},
        {QStringLiteral("activity"), titled(place.activityID, place.activityTitle)},
        {QStringLiteral("time"), time.toString(Qt::ISODate)},
        {QStringLiteral("version"), version},
        {QStringLiteral("files"), fileArray},
    };
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

std::optional<Manifest> Manifest::fromJson(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();

    Manifest manifest;
    if (root.value(QStringLiteral("format")).toInt(-1) != 1)
        return std::nullopt;
    const auto text = [&root](const char *key, QString &out) {
        const QJsonValue value = root.value(QLatin1String(key));
        if (!value.isString())
            return false;
        out = value.toString();
        return true;
    };
    QString time;
    if (!text("pupil", manifest.pupil.name) || !text("class", manifest.pupil.className)
        || !text("content", manifest.place.contentTitle) || !text("time", time)
        || !text("version", manifest.version))
        return std::nullopt;
    if (!readTitled(root.value(QStringLiteral("theme")), manifest.place.themeID, manifest.place.themeTitle)
        || !readTitled(root.value(QStringLiteral("scenario")), manifest.place.scenarioID,
            manifest.place.scenarioTitle)
        || !readTitled(root.value(QStringLiteral("activity")), manifest.place.activityID,
            manifest.place.activityTitle))
        return std::nullopt;
    manifest.time = QDateTime::fromString(time, Qt::ISODate);
    if (!manifest.time.isValid())
        return std::nullopt;

    const QJsonValue filesValue = root.value(QStringLiteral("files"));
    if (!filesValue.isArray())
        return std::nullopt;
    for (const QJsonValue &value : filesValue.toArray()) {
        if (!value.isObject())
            return std::nullopt;
        const QJsonObject object = value.toObject();
        const QJsonValue name = object.value(QStringLiteral("name"));
        const QJsonValue size = object.value(QStringLiteral("size"));
        const QJsonValue sha = object.value(QStringLiteral("sha256"));
        if (!name.isString() || !size.isDouble() || !sha.isString())
            return std::nullopt;
        const double bytes = size.toDouble();
        if (bytes < 0 || bytes > 9.0e15 || bytes != static_cast<double>(static_cast<qint64>(bytes)))
            return std::nullopt;
        if (!isPlainEntryName(name.toString()) || !isHex64(sha.toString()))
            return std::nullopt;
        manifest.files.append({name.toString(), static_cast<qint64>(bytes), sha.toString().toLatin1()});
    }
    return manifest;
}

} // namespace handin
