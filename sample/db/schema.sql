-- Tables of the content database, as the program reads them. Every text column is
-- declared NOCASE so that the sqlite3 shell can open the file; the program replaces that
-- collation with its Greek-aware one when it opens the file.

CREATE TABLE Themes (
    ThemeID INTEGER PRIMARY KEY,
    Theme TEXT COLLATE NOCASE
);

CREATE TABLE Scenarios (
    ScenarioID INTEGER PRIMARY KEY,
    Scenario TEXT COLLATE NOCASE,
    ThemeID INTEGER
);

CREATE TABLE Activities (
    ActivityID INTEGER PRIMARY KEY,
    Activity TEXT COLLATE NOCASE,
    ActionsDocument TEXT COLLATE NOCASE
);

CREATE TABLE RelScenarioActivity (
    ScenarioID INTEGER,
    ActivityID INTEGER
);

CREATE TABLE RelActivityResource (
    ActivityID INTEGER,
    ResourceID INTEGER
);

CREATE TABLE Resources (
    ResourceID INTEGER PRIMARY KEY,
    ResTypeID INTEGER,
    PlaceID INTEGER,
    ChronologicalID INTEGER,
    Author TEXT COLLATE NOCASE,
    Book TEXT COLLATE NOCASE,
    TextRTF TEXT COLLATE NOCASE,
    TextPath TEXT COLLATE NOCASE,
    PicturePath TEXT COLLATE NOCASE,
    Caption TEXT COLLATE NOCASE,
    Lezanda TEXT COLLATE NOCASE,
    Kind TEXT COLLATE NOCASE,
    Museum TEXT COLLATE NOCASE
);

CREATE TABLE ResTypes (
    ResTypeID INTEGER PRIMARY KEY,
    ResType TEXT COLLATE NOCASE
);

CREATE TABLE Places (
    PlaceID INTEGER PRIMARY KEY,
    Place TEXT COLLATE NOCASE
);

CREATE TABLE Chronologicals (
    ChronologicalID INTEGER PRIMARY KEY,
    Chronological TEXT COLLATE NOCASE
);

CREATE TABLE Keywords (
    KeywordID INTEGER PRIMARY KEY,
    Keyword TEXT COLLATE NOCASE
);

CREATE TABLE RelKeywordResource (
    KeywordID INTEGER,
    ResourceID INTEGER
);

CREATE TABLE Comments (
    CommentID INTEGER PRIMARY KEY,
    Comment TEXT COLLATE NOCASE,
    Picture TEXT COLLATE NOCASE
);

CREATE TABLE RelCommentResource (
    CommentID INTEGER,
    ResourceID INTEGER,
    ExactPhrase TEXT COLLATE NOCASE
);

CREATE TABLE Euretirio (
    EuretirioID INTEGER PRIMARY KEY,
    Oros TEXT COLLATE NOCASE,
    Epexigisi TEXT COLLATE NOCASE,
    EuretirioTypeID INTEGER,
    Picture TEXT COLLATE NOCASE,
    Sound TEXT COLLATE NOCASE,
    Video TEXT COLLATE NOCASE
);

CREATE TABLE EuretirioTypes (
    EuretirioTypeID INTEGER PRIMARY KEY,
    EuretirioType TEXT COLLATE NOCASE
);

CREATE TABLE RelEuretirioResource (
    EuretirioID INTEGER,
    ResourceID INTEGER,
    ExactPhrase TEXT COLLATE NOCASE
);

-- The link tables are read by joins on both of their ids.
CREATE INDEX RelScenarioActivityByActivity ON RelScenarioActivity (ActivityID);
CREATE INDEX RelActivityResourceByActivity ON RelActivityResource (ActivityID);
CREATE INDEX RelKeywordResourceByKeyword ON RelKeywordResource (KeywordID);
CREATE INDEX RelCommentResourceByResource ON RelCommentResource (ResourceID);
CREATE INDEX RelEuretirioResourceByResource ON RelEuretirioResource (ResourceID);
