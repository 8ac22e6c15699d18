create table items (id integer primary key, name varchar(40) not null, "Unit Price" currency, made date, note text, picture blob);
with recursive n(i) as (select 1 union all select i + 1 from n where i < 18)
insert into items select i, 'Item ' || i, i * 1.25, date('2026-01-01', '+' || i || ' days'),
    case when i % 3 = 0 then null when i % 3 = 1 then '' else 'note <' || i || '>' end, x'00ff' from n;
create table no_items (id integer primary key, name text);
create table "odd names" (id integer primary key, "Größe" text, "größe_2" text);
insert into "odd names" values (1, 'groß', 'klein');
