create table files (id integer primary key, title text, photo blob, document blob, sheet text, face text);
insert into files (id, title, photo) values (1, 'First', cast('<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"/>' as blob));
insert into files (id, title, sheet, face) values (2, 'Second', 'old.txt', 'old.png');
