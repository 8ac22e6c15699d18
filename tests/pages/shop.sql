create table items (id integer primary key, name varchar(40) not null, "Unit Price" currency, made date, note text, picture blob);
with recursive n(i) as (select 1 union all select i + 1 from n where i < 18)
insert into items select i, 'Item ' || i, i * 1.25, date('2026-01-01', '+' || i || ' days'),
    case when i % 3 = 0 then null when i % 3 = 1 then '' else 'note <' || i || '>' end, x'00ff' from n;
create table no_items (id integer primary key, name text);
create table "odd names" (id integer primary key, "Größe" text, "größe_2" text);
insert into "odd names" values (1, 'groß', 'klein');
create table files (id integer primary key, "the file" blob);
insert into files values (1, x'3c623e'), (2, null), (3, x''), (4, x'fffe01'), (5, x'237e69647e23');
create table profits (id integer primary key, "the v" double, note text);
insert into profits values (1, -50, '#~the v;graph~#'), (2, 25.5, null), (3, 100, null), (4, null, null);
create table people (id integer primary key, name varchar(12) not null, age integer, born date, member boolean, photo blob, check (age < 150));
insert into people values (1, 'Ann', 30, '1996-02-29', 1, null), (2, 'Bob', null, null, 0, null), (3, 'Cid', 50, '1976-12-31', 0, x'010203'),
    (4, 'Dot', 8, '2018-05-05', 1, null), (5, 'Eve', 44, '1982-01-01', 0, null);
