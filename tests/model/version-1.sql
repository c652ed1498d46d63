-- The tables as version 1 of the program made them, with two notes. Never changed: old libraries look like this.
CREATE TABLE note(
    pk INTEGER PRIMARY KEY AUTOINCREMENT,
    id BLOB NOT NULL UNIQUE,
    title TEXT DEFAULT '',
    createdAt INTEGER,
    modifiedAt INTEGER,
    isPinned INTEGER NOT NULL DEFAULT 0,
    isArchived INTEGER NOT NULL DEFAULT 0,
    isTrashed INTEGER NOT NULL DEFAULT 0,
    trashedAt INTEGER,
    wordCount INTEGER NOT NULL DEFAULT 0,
    syncStatus INTEGER NOT NULL DEFAULT 1,
    sortOrder INTEGER NOT NULL DEFAULT 0,
    ckRecordID TEXT,
    ckChangeTag TEXT,
    sourceFilePath TEXT,
    bookmarkData BLOB
);
CREATE TABLE noteContent(
    notePk INTEGER PRIMARY KEY REFERENCES note(pk) ON DELETE CASCADE,
    content TEXT NOT NULL DEFAULT ''
);
CREATE TABLE tag(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    name TEXT NOT NULL DEFAULT '',
    fullPath TEXT NOT NULL DEFAULT '',
    parentPk INTEGER REFERENCES tag(pk) ON DELETE CASCADE
);
CREATE TABLE attachment(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    filename TEXT NOT NULL DEFAULT '',
    mimeType TEXT NOT NULL DEFAULT '',
    data BLOB,
    isInFile INTEGER NOT NULL DEFAULT 0,
    thumbnailData BLOB,
    ckRecordID TEXT,
    notePk INTEGER REFERENCES note(pk) ON DELETE CASCADE
);
CREATE TABLE folder(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    name TEXT NOT NULL DEFAULT '',
    sortOrder INTEGER NOT NULL DEFAULT 0,
    parentPk INTEGER REFERENCES folder(pk) ON DELETE CASCADE
);
CREATE TABLE noteTag(
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    PRIMARY KEY(tagPk, notePk)
) WITHOUT ROWID;
CREATE TABLE noteFolder(
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    PRIMARY KEY(folderPk, notePk)
) WITHOUT ROWID;
CREATE UNIQUE INDEX tagByPath ON tag(fullPath);
CREATE INDEX tagByParent ON tag(parentPk);
CREATE INDEX folderByParent ON folder(parentPk, sortOrder);
CREATE INDEX attachmentByNote ON attachment(notePk);
CREATE INDEX noteTagByNote ON noteTag(notePk);
CREATE INDEX noteFolderByNote ON noteFolder(notePk);
CREATE INDEX noteBySourceFile ON note(sourceFilePath) WHERE sourceFilePath IS NOT NULL;

INSERT INTO note(pk, id, title, createdAt, modifiedAt) VALUES
    (1, x'00000000000000000000000000000001', 'Old plan', 1000000, 2000000),
    (2, x'00000000000000000000000000000002', 'Old list', 1000000, 3000000);
INSERT INTO noteContent VALUES(1, '# Old plan' || char(10) || 'Some #work/plan'), (2, 'Old list');
INSERT INTO tag(pk, id, name, fullPath, parentPk) VALUES
    (1, x'0000000000000000000000000000000A', 'work', 'work', NULL),
    (2, x'0000000000000000000000000000000B', 'plan', 'work/plan', 1);
INSERT INTO noteTag VALUES(1, 1), (2, 1);
INSERT INTO folder(pk, id, name) VALUES(1, x'0000000000000000000000000000000C', 'Papers');
INSERT INTO noteFolder VALUES(1, 2);
PRAGMA user_version=1;
