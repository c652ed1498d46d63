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
, excerpt TEXT NOT NULL DEFAULT '', folderCount INTEGER NOT NULL DEFAULT 0);
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
, isObject INTEGER NOT NULL DEFAULT 1, listedCount INTEGER NOT NULL DEFAULT 0);
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
, noteCount INTEGER NOT NULL DEFAULT 0);
CREATE TABLE counter(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE noteTag(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    isAttached INTEGER NOT NULL DEFAULT 1,
    isInText INTEGER NOT NULL DEFAULT 0,
    isListed INTEGER NOT NULL DEFAULT 0,
    isPinned INTEGER NOT NULL DEFAULT 0,
    modifiedAt INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(notePk, tagPk)
) WITHOUT ROWID;
CREATE TABLE noteFolder(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    isListed INTEGER NOT NULL DEFAULT 0,
    isPinned INTEGER NOT NULL DEFAULT 0,
    modifiedAt INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(notePk, folderPk)
) WITHOUT ROWID;
CREATE UNIQUE INDEX tagByPath ON tag(fullPath);
CREATE INDEX tagByParent ON tag(parentPk);
CREATE INDEX folderByParent ON folder(parentPk, sortOrder);
CREATE INDEX attachmentByNote ON attachment(notePk);
CREATE INDEX noteBySourceFile ON note(sourceFilePath) WHERE sourceFilePath IS NOT NULL;
CREATE INDEX listAll0 ON note(isPinned DESC, modifiedAt DESC) WHERE isTrashed=0 AND isArchived=0;
CREATE INDEX listAll1 ON note(isPinned DESC, createdAt DESC) WHERE isTrashed=0 AND isArchived=0;
CREATE INDEX listAll2 ON note(isPinned DESC, title) WHERE isTrashed=0 AND isArchived=0;
CREATE INDEX listAll3 ON note(isPinned DESC, wordCount DESC) WHERE isTrashed=0 AND isArchived=0;
CREATE INDEX listUnfiled0 ON note(isPinned DESC, modifiedAt DESC) WHERE isTrashed=0 AND isArchived=0 AND folderCount=0;
CREATE INDEX listUnfiled1 ON note(isPinned DESC, createdAt DESC) WHERE isTrashed=0 AND isArchived=0 AND folderCount=0;
CREATE INDEX listUnfiled2 ON note(isPinned DESC, title) WHERE isTrashed=0 AND isArchived=0 AND folderCount=0;
CREATE INDEX listUnfiled3 ON note(isPinned DESC, wordCount DESC) WHERE isTrashed=0 AND isArchived=0 AND folderCount=0;
CREATE INDEX listLocal0 ON note(isPinned DESC, modifiedAt DESC) WHERE isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL;
CREATE INDEX listLocal1 ON note(isPinned DESC, createdAt DESC) WHERE isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL;
CREATE INDEX listLocal2 ON note(isPinned DESC, title) WHERE isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL;
CREATE INDEX listLocal3 ON note(isPinned DESC, wordCount DESC) WHERE isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL;
CREATE INDEX listArchived0 ON note(isPinned DESC, modifiedAt DESC) WHERE isArchived=1 AND isTrashed=0;
CREATE INDEX listArchived1 ON note(isPinned DESC, createdAt DESC) WHERE isArchived=1 AND isTrashed=0;
CREATE INDEX listArchived2 ON note(isPinned DESC, title) WHERE isArchived=1 AND isTrashed=0;
CREATE INDEX listArchived3 ON note(isPinned DESC, wordCount DESC) WHERE isArchived=1 AND isTrashed=0;
CREATE INDEX listTrash0 ON note(isPinned DESC, modifiedAt DESC) WHERE isTrashed=1;
CREATE INDEX listTrash1 ON note(isPinned DESC, createdAt DESC) WHERE isTrashed=1;
CREATE INDEX listTrash2 ON note(isPinned DESC, title) WHERE isTrashed=1;
CREATE INDEX listTrash3 ON note(isPinned DESC, wordCount DESC) WHERE isTrashed=1;
CREATE INDEX noteByModified ON note(modifiedAt DESC) WHERE isTrashed=0;
CREATE INDEX listTag ON noteTag
    (tagPk, isListed, isAttached, isPinned DESC, modifiedAt DESC, notePk);
CREATE INDEX listFolder ON noteFolder
    (folderPk, isListed, isPinned DESC, modifiedAt DESC, notePk);

INSERT INTO note(pk, id, title, createdAt, modifiedAt, isPinned, excerpt, folderCount, wordCount) VALUES
    (1, x'00000000000000000000000000000001', 'Old plan', 1000000, 2000000, 1, 'Some #work/plan', 0, 4),
    (2, x'00000000000000000000000000000002', 'Old list', 1000000, 3000000, 0, '', 1, 2);
INSERT INTO note(pk, id, title, createdAt, modifiedAt, isTrashed, excerpt, folderCount, wordCount) VALUES
    (3, x'00000000000000000000000000000003', 'Thrown away', 1000000, 4000000, 1, '#work', 1, 3);
INSERT INTO noteContent VALUES(1, '# Old plan' || char(10) || 'Some #work/plan'), (2, 'Old list'),
    (3, '# Thrown away' || char(10) || '#work');
INSERT INTO tag(pk, id, name, fullPath, parentPk, isObject, listedCount) VALUES
    (1, x'0000000000000000000000000000000A', 'work', 'work', NULL, 1, 1),
    (2, x'0000000000000000000000000000000B', 'plan', 'work/plan', 1, 1, 1);
INSERT INTO noteTag(tagPk, notePk, isAttached, isInText, isListed, isPinned, modifiedAt) VALUES
    (1, 1, 1, 1, 1, 1, 2000000), (2, 1, 1, 1, 1, 1, 2000000),
    (1, 3, 1, 1, 0, 0, 4000000);
INSERT INTO folder(pk, id, name, noteCount) VALUES(1, x'0000000000000000000000000000000C', 'Papers', 1);
INSERT INTO noteFolder(folderPk, notePk, isListed, modifiedAt) VALUES(1, 2, 1, 3000000), (1, 3, 0, 4000000);
INSERT INTO counter VALUES('allNotes', 2), ('unfiled', 1), ('trash', 1), ('derivedVersion', 1);
PRAGMA user_version=3;
