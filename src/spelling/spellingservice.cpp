#include "spellingservice.h"

#include "checker.h"
#include "dictionary.h"
#include "wordlists.h"

#include <logging.h>
#include <settings.h>

#include <QSettings>

namespace spelling {

namespace {

const QString EnabledKey = QStringLiteral("Spelling/Enabled");

} // namespace

Service::Service(Runner runner, QStringList folders)
    : m_runner(std::move(runner))
    , m_folders(folders.isEmpty() ? Dictionary::defaultFolders() : std::move(folders))
{
}

Service::~Service() = default;

void Service::request()
{
    if (m_state != State::NotLoaded || !m_runner)
        return;
    m_state = State::Loading;
    const QStringList folders = m_folders;
    const QString wordsPath = pupilWordsPath();
    m_runner(
        this,
        [folders, wordsPath](const std::atomic_bool &cancelled) {
            Loaded result;
            std::shared_ptr<Dictionary> dictionary = Dictionary::load(folders, &result.why, &cancelled);
            if (!dictionary)
                return result;
            result.checker = std::make_shared<Checker>(std::move(dictionary));
            result.checker->addOwnWords(readPupilWords(wordsPath));
            return result;
        },
        [this](Loaded result) { loaded(std::move(result)); });
}

void Service::loaded(Loaded result)
{
    m_checker = std::move(result.checker);
    if (!m_checker) {
        m_state = State::Unavailable;
        qCWarning(lcSpelling).noquote() << "spell checking is off:" << result.why;
    } else {
        m_state = State::Ready;
        m_checker->setCourseWords(m_courseWords);
        m_checker->addOwnWords(m_sessionWords);
    }
    emit ready();
}

Checker *Service::checker() const
{
    return m_checker.get();
}

bool Service::isEnabled() const
{
    if (m_enabled < 0) {
        const QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
        m_enabled = settings.value(EnabledKey, true).toBool() ? 1 : 0;
    }
    return m_enabled == 1;
}

void Service::setEnabled(bool on)
{
    if (isEnabled() == on)
        return;
    m_enabled = on ? 1 : 0;
    QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
    settings.setValue(EnabledKey, on);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        qCWarning(lcSpelling) << "the spell checking choice could not be kept in" << settings.fileName();
    emit enabledChanged(on);
}

void Service::addToDictionary(const QString &word)
{
    const QString path = pupilWordsPath();
    if (!appendPupilWord(path, word))
        qCWarning(lcSpelling) << "the pupil's word could not be written to" << path;
    m_sessionWords.append(word);
    if (m_checker)
        m_checker->addOwnWord(word);
    emit wordsChanged();
}

void Service::ignore(const QString &word)
{
    m_sessionWords.append(word);
    if (m_checker)
        m_checker->addOwnWord(word);
    emit wordsChanged();
}

void Service::useCourse(content::Database &database)
{
    QStringList words = readCourseWords(database);
    if (words == m_courseWords)
        return;
    m_courseWords = std::move(words);
    if (m_checker) {
        m_checker->setCourseWords(m_courseWords);
        emit wordsChanged();
    }
}

} // namespace spelling
