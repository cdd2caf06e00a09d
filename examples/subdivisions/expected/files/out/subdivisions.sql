CREATE TABLE subdivision (code TEXT PRIMARY KEY, country TEXT, name TEXT, kind TEXT, parent TEXT);
INSERT INTO subdivision VALUES ('AL-11', 'AL', 'Tiranë', 'County', '');
INSERT INTO subdivision VALUES ('AM-GR', 'AM', 'Geġark''unik''', 'Region', '');
INSERT INTO subdivision VALUES ('AM-TV', 'AM', 'Tavuš', 'Region', '');
INSERT INTO subdivision VALUES ('ES-B', 'ES', 'Barcelona [Barcelona]', 'Province', 'CT');
INSERT INTO subdivision VALUES ('ES-O', 'ES', 'Asturias, Principado de', 'Autonomous community', '');
