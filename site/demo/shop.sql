-- The database of the demo shop. It is run once, when the server starts and demo/data/shop.db is missing.
-- Nothing in it is left to chance: every row follows from its number, so that the shop is the same on
-- every machine and a test may know what a page must show.

pragma foreign_keys = on;
begin;

create table categories (
    id          integer primary key,
    name        varchar(40) not null unique,
    description varchar(200)
);

create table products (
    id           integer primary key,
    category_id  integer not null references categories (id),
    name         varchar(60) not null,
    price        decimal(10,2) not null,
    weight_kg    double,
    stock        smallint not null default 0,
    discontinued boolean not null default 0,
    added        date not null,
    description  text,
    picture      blob,
    picture_type varchar(30)
);

create table customers (
    id           integer primary key,
    name         varchar(60) not null,
    company      varchar(60),
    email        varchar(80) not null unique,
    phone        varchar(20),
    city         varchar(40) not null,
    country      varchar(40) not null,
    since        date not null,
    newsletter   boolean not null default 0,
    credit_limit decimal(10,2)
);

create table orders (
    id          integer primary key,
    customer_id integer not null references customers (id),
    ordered     datetime not null,
    shipped     date,
    status      varchar(12) not null check (status in ('new', 'packed', 'shipped', 'returned')),
    paid        boolean not null default 0,
    freight     decimal(10,2) not null,
    total       decimal(10,2) not null default 0,
    note        varchar(200)
);

create table order_lines (
    order_id   integer not null references orders (id) on delete cascade,
    line       smallint not null,
    product_id integer not null references products (id),
    quantity   smallint not null check (quantity > 0),
    unit_price decimal(10,2) not null,
    discount   double not null default 0,
    primary key (order_id, line)
);

-- One column for every kind of control: languages and weekdays hold the items from which language and days choose.
create table workshops (
    id        integer primary key,
    title     varchar(60) not null,
    about     text,
    topic     varchar(40) not null references categories (name),
    room      varchar(20) not null,
    held      date not null,
    seats     smallint not null check (seats between 1 and 40),
    fee       decimal(10,2) not null,
    bookable  boolean not null default 1,
    level     varchar(12) not null check (level in ('Beginners', 'Advanced', 'Everyone')),
    included  varchar(60),
    languages varchar(80) not null,
    language  varchar(20) not null,
    weekdays  varchar(60) not null,
    days      varchar(60)
);

create table staff (
    id      integer primary key,
    name    varchar(60) not null,
    role    varchar(20) not null check (role in ('Counter', 'Roastery', 'Bakery', 'Office', 'Deliveries')),
    email   varchar(80) not null unique,
    started date not null,
    hours   decimal(4,1) not null check (hours between 1 and 48),
    wage    decimal(8,2),
    working boolean not null default 1,
    about   varchar(200)
);

create table documents (
    id    integer primary key,
    title varchar(60) not null,
    file  varchar(80),
    valid date
);

create view monthly_sales as
select date(ordered, 'start of month') as month, count(*) as orders, sum(total) as revenue from orders group by 1;

create index products_by_category on products (category_id);
create index orders_by_customer on orders (customer_id, ordered);
create index order_lines_by_product on order_lines (product_id);

-- Categories -----------------------------------------------------------------------------------------

insert into categories (id, name, description) values
    (1, 'Tea',          'Leaves from gardens we have walked through'),
    (2, 'Coffee',       'Roasted on Tuesdays, sent on Wednesdays'),
    (3, 'Chocolate',    'Bars, drops and drinking chocolate'),
    (4, 'Spices',       'Whole, so that you grind them fresh'),
    (5, 'Honey & jam',  'In jars that want to come back'),
    (6, 'Bread & cake', 'Baked this morning'),
    (7, 'Cups & pots',  'Thrown and glazed by hand'),
    (8, 'Books',        null);

-- Products: fifteen to a category, a kind and a make ----------------------------------------------------

create temp table kinds (category_id, k, name, base);
insert into kinds values
    (1, 0, 'Assam', 6.5), (1, 1, 'Darjeeling', 9.8), (1, 2, 'Sencha', 8.25), (1, 3, 'Jasmine', 7.4), (1, 4, 'Oolong', 11.9),
    (2, 0, 'Espresso', 12.5), (2, 1, 'Filter roast', 11), (2, 2, 'Decaf', 13.2), (2, 3, 'Yirgacheffe', 16.75), (2, 4, 'Monsooned', 14.6),
    (3, 0, 'Dark 70 %', 3.9), (3, 1, 'Milk', 3.4), (3, 2, 'Hazelnut', 4.2), (3, 3, 'Orange', 4.05), (3, 4, 'Drinking chocolate', 7.8),
    (4, 0, 'Cardamom', 5.2), (4, 1, 'Cinnamon', 2.95), (4, 2, 'Smoked paprika', 3.35), (4, 3, 'Saffron', 18.9), (4, 4, 'Black pepper', 2.6),
    (5, 0, 'Heather honey', 8.9), (5, 1, 'Linden honey', 8.4), (5, 2, 'Plum jam', 4.75), (5, 3, 'Crème de marrons', 6.15), (5, 4, 'Quince jelly', 5.3),
    (6, 0, 'Rye loaf', 4.6), (6, 1, 'Brioche', 3.8), (6, 2, 'Gingerbread', 5.9), (6, 3, 'Baumkuchen', 14.5), (6, 4, 'Pão de queijo', 4.1),
    (7, 0, 'Tea bowl', 22), (7, 1, 'Espresso cup', 14.5), (7, 2, 'Milk jug', 19.75), (7, 3, 'Teapot', 58), (7, 4, 'Hand filter', 31.2),
    (8, 0, 'Brewing by hand', 24), (8, 1, 'The spice route', 19.9), (8, 2, 'A year of jam', 17.5), (8, 3, 'Bread notes', 27.8), (8, 4, 'Clay & fire', 34);

create temp table makes (category_id, m, name, factor);
insert into makes values
    (1, 0, 'first flush', 1.6), (1, 1, 'house blend', 1), (1, 2, 'organic', 1.25),
    (2, 0, '250 g', 1), (2, 1, '500 g', 1.85), (2, 2, '1 kg', 3.5),
    (3, 0, 'bar', 1), (3, 1, 'gift box', 3.2), (3, 2, 'big bag', 2.4),
    (4, 0, 'tin', 1), (4, 1, 'refill', 0.75), (4, 2, 'grinder', 2.2),
    (5, 0, 'small jar', 1), (5, 1, 'large jar', 1.7), (5, 2, 'bucket', 5.5),
    (6, 0, 'fresh', 1), (6, 1, 'sliced', 1.1), (6, 2, 'half', 0.6),
    (7, 0, 'white', 1), (7, 1, 'celadon', 1.15), (7, 2, 'raku', 1.4),
    (8, 0, 'paperback', 1), (8, 1, 'cloth', 1.5), (8, 2, 'signed', 2.1);

insert into products (id, category_id, name, price, weight_kg, stock, discontinued, added, description)
select
    (kinds.category_id - 1) * 15 + k * 3 + m + 1,
    kinds.category_id,
    kinds.name || ', ' || makes.name,
    round(base * factor, 2),
    case when kinds.category_id = 8 then null else round(0.1 + ((k * 7 + m * 3 + kinds.category_id) % 19) * 0.085, 3) end,
    (k * 37 + m * 53 + kinds.category_id * 29) % 120,
    (k * 5 + m * 3 + kinds.category_id) % 13 = 0,
    date('2019-01-07', '+' || ((k * 311 + m * 97 + kinds.category_id * 173) % 2190) || ' days'),
    case when (k + m + kinds.category_id) % 4 = 0 then null
         else kinds.name || ' as ' || makes.name || '. '
              || case (k + m) % 3 when 0 then 'A favourite of the people who pack it.'
                                  when 1 then 'Small batches, never in stock for long.'
                                  else 'Keeps well in a dry & dark place.' end end
from kinds join makes on makes.category_id = kinds.category_id;

-- A picture each: a tile in the colour of its category with the first letter of the name.
update products
set picture_type = 'image/svg+xml',
    picture = cast(
        '<svg xmlns="http://www.w3.org/2000/svg" width="96" height="96" viewBox="0 0 96 96">'
        || '<rect width="96" height="96" rx="14" fill="hsl(' || ((category_id * 47 + id % 15 * 2) % 360) || ',55%,'
        || (42 + id % 5 * 4) || '%)"/>'
        || '<circle cx="' || (20 + id * 13 % 56) || '" cy="' || (20 + id * 29 % 56) || '" r="' || (22 + id % 4 * 5)
        || '" fill="#fff" fill-opacity=".18"/>'
        || '<text x="48" y="63" font-family="Georgia,serif" font-size="44" fill="#fff" text-anchor="middle">'
        || substr(name, 1, 1) || '</text></svg>' as blob)
where id % 20 <> 0;

-- Customers -------------------------------------------------------------------------------------------

create temp table given (n integer primary key, name, ascii);
insert into given values
    (0, 'Ada', 'ada'), (1, 'Björn', 'bjorn'), (2, 'Chiara', 'chiara'), (3, 'Dmitri', 'dmitri'), (4, 'Élodie', 'elodie'), (5, 'Farid', 'farid'),
    (6, 'Grace', 'grace'), (7, 'Håkon', 'hakon'), (8, 'Ines', 'ines'), (9, 'Jürgen', 'juergen'), (10, 'Katarzyna', 'katarzyna'), (11, 'Liam', 'liam'),
    (12, 'Mei', 'mei'), (13, 'Noémie', 'noemie'), (14, 'Oluwaseun', 'oluwaseun'), (15, 'Priya', 'priya');

create temp table family (n integer primary key, name, ascii);
insert into family values
    (0, 'Andersen', 'andersen'), (1, 'Brontë', 'bronte'), (2, 'Carvalho', 'carvalho'), (3, 'Dvořák', 'dvorak'), (4, 'Esposito', 'esposito'),
    (5, 'Fischer', 'fischer'), (6, 'García', 'garcia'), (7, 'Hughes', 'hughes'), (8, 'Ivanova', 'ivanova'), (9, 'Jansen', 'jansen'),
    (10, 'Kowalski', 'kowalski'), (11, 'Lindström', 'lindstroem'), (12, 'Müller', 'mueller'), (13, 'Nakamura', 'nakamura'), (14, 'O''Brien', 'obrien');

create temp table places (n integer primary key, city, country, prefix);
insert into places values
    (0, 'Aarhus', 'Denmark', '+45'), (1, 'Bern', 'Switzerland', '+41'), (2, 'Coimbra', 'Portugal', '+351'), (3, 'Dublin', 'Ireland', '+353'),
    (4, 'Évora', 'Portugal', '+351'), (5, 'Firenze', 'Italy', '+39'), (6, 'Göteborg', 'Sweden', '+46'), (7, 'Hamburg', 'Germany', '+49'),
    (8, 'İzmir', 'Türkiye', '+90'), (9, 'Jönköping', 'Sweden', '+46'), (10, 'Kraków', 'Poland', '+48'), (11, 'Lyon', 'France', '+33'),
    (12, '京都', 'Japan', '+81'), (13, 'Leeds', 'United Kingdom', '+44'), (14, 'Málaga', 'Spain', '+34'), (15, 'Nantes', 'France', '+33'),
    (16, 'Olomouc', 'Czechia', '+420'), (17, 'Porto', 'Portugal', '+351'), (18, 'Québec', 'Canada', '+1'), (19, 'Αθήνα', 'Greece', '+30');

with recursive n (i) as (select 0 union all select i + 1 from n where i < 239)
insert into customers (id, name, company, email, phone, city, country, since, newsletter, credit_limit)
select
    i + 1,
    given.name || ' ' || family.name,
    case i % 3 when 0 then null
               when 1 then family.name || case i % 4 when 0 then ' & Co.' when 1 then ' Tearooms' when 2 then ' Ltd' else ' Feinkost' end
               else city || case i % 5 when 0 then ' Café' when 1 then ' Deli' when 2 then ' Kontor' when 3 then ' Trading' else ' Pantry' end end,
    given.ascii || '.' || family.ascii || '@example.' || case i % 3 when 0 then 'com' when 1 then 'org' else 'net' end,
    case when i % 7 = 3 then null else prefix || printf(' %03d %05d', 100 + i * 83 % 900, 10000 + i * 7919 % 90000) end,
    city,
    country,
    date('2015-03-01', '+' || (i * 1237 % 3650) || ' days'),
    i * 5 % 3 <> 0,
    case when i % 6 = 5 then null else 250 + i * 61 % 40 * 125.5 end
from n
join given on given.n = i % 16
join family on family.n = i % 15 -- 16 and 15 have no common factor: all 240 names differ
join places on places.n = i * 7 % 20;

-- Orders and their lines ------------------------------------------------------------------------------

with recursive n (i) as (select 0 union all select i + 1 from n where i < 1499)
insert into orders (id, customer_id, ordered, shipped, status, paid, freight, note)
select
    i + 10001,
    i * 101 % 240 + 1,
    datetime('2021-01-04 08:00:00', '+' || (i * 1713) || ' minutes', '+' || (i * 37 % 60) || ' seconds'),
    case when i >= 1470 or i % 29 = 7 then null
         else date('2021-01-04 08:00:00', '+' || (i * 1713) || ' minutes', '+' || (1 + i % 4) || ' days') end,
    case when i >= 1485 then 'new'
         when i >= 1470 or i % 29 = 7 then 'packed'
         when i % 41 = 11 then 'returned'
         else 'shipped' end,
    i < 1470 and i % 17 <> 5,
    case when i % 9 = 0 then 0 else 3.9 + i % 5 * 1.25 end,
    case i % 23 when 4 then 'Please ring twice' when 9 then 'A present: no invoice in the parcel, please'
                when 15 then 'Leave it with the neighbours at № 12' when 20 then 'Für die Teeküche <3' else null end
from n;

with recursive l (line) as (select 1 union all select line + 1 from l where line < 5)
insert into order_lines (order_id, line, product_id, quantity, unit_price, discount)
select
    orders.id,
    line,
    products.id,
    1 + (orders.id * 3 + line * 5) % 6,
    products.price,
    case (orders.id + line) % 8 when 0 then 0.1 when 3 then 0.05 else 0 end
from orders
join l on line <= 1 + orders.id * 7 % 5
join products on products.id = (orders.id * 31 + line * 17) % 120 + 1
order by orders.id, line;

update orders
set total = round(freight + (select sum(quantity * unit_price * (1 - discount)) from order_lines where order_id = orders.id), 2);

-- Workshops -------------------------------------------------------------------------------------------

create temp table lessons (i integer primary key, title, topic, about);
insert into lessons values
    (0, 'Latte art <3', 'Coffee', 'Hearts first, then swans. We steam a lot of milk & drink most of it.'),
    (1, 'A morning of green tea', 'Tea', 'Five gardens, one kettle: how water, time and leaf make the cup.'),
    (2, 'Tempering chocolate', 'Chocolate', 'From bean to bar, with a marble slab, a thermometer and patience.'),
    (3, 'Grind your own curry', 'Spices', 'Roast, grind, taste and take home three blends of your own.'),
    (4, 'Jam for people in a hurry', 'Honey & jam', 'Forty minutes from fruit to jar, and why pectin is not cheating.'),
    (5, 'Sourdough "from scratch"', 'Bread & cake', 'Starter, dough and oven; bring a jar with a lid.'),
    (6, 'Throwing a tea bowl', 'Cups & pots', 'One lump of clay, one wheel, one bowl that is nearly round.'),
    (7, 'Cupping for the curious', 'Coffee', 'Slurp loudly: twelve coffees side by side, blind.'),
    (8, 'Oolong, slowly', 'Tea', 'One tea, nine infusions, an afternoon.'),
    (9, 'Truffles & pralines', 'Chocolate', 'Filled, dipped, rolled in cocoa and boxed.'),
    (10, 'Glazing day', 'Cups & pots', null),
    (11, 'Bees for beginners', 'Honey & jam', 'A visit to the hives on the roof; veils are there in all sizes.');

insert into workshops (id, title, about, topic, room, held, seats, fee, bookable, level, included, languages, language, weekdays, days)
select
    i + 1, title, about, topic,
    case i % 4 when 0 then 'Kitchen' when 1 then 'Loft' when 2 then 'Cellar' else 'Garden' end,
    date('2026-01-10', '+' || (i * 17) || ' days'),
    6 + i * 5 % 13,
    25 + i * 7 % 10 * 4.5,
    i % 5 <> 3,
    case i % 3 when 0 then 'Beginners' when 1 then 'Everyone' else 'Advanced' end,
    case i % 4 when 0 then 'apron, recipes' when 1 then 'tea' when 2 then 'apron, tea, recipes' else null end,
    case i % 2 when 0 then 'English,Portuguese,German' else 'English,Danish' end,
    case i % 4 when 2 then 'Portuguese' when 1 then 'Danish' else 'English' end,
    case i % 3 when 0 then 'Sat~Saturday,Sun~Sunday' else 'Mon~Monday,Wed~Wednesday,Fri~Friday' end,
    case i % 3 when 0 then 'Sat' when 1 then 'Mon, Fri' else null end
from lessons;

-- Staff ------------------------------------------------------------------------------------------------

insert into staff (name, role, email, started, hours, wage, working, about) values
    ('Amara Osei',     'Office',     'amara@shop.example',  '2015-03-01', 38.5, 3120,    1, 'Opened the shop & still opens it every morning.'),
    ('Bruno Sá',       'Roastery',   'bruno@shop.example',  '2016-09-12', 38.5, 2875.5,  1, 'Roasts on Tuesdays. Please do not call on Tuesdays.'),
    ('Clara Lund',     'Bakery',     'clara@shop.example',  '2017-02-20', 30,   2210,    1, null),
    ('Dov Peretz',     'Deliveries', 'dov@shop.example',    '2018-06-04', 20,   1480,    1, 'Knows every neighbour at № 12.'),
    ('Emi Tanaka',     'Counter',    'emi@shop.example',    '2019-10-14', 24,   1690.25, 1, null),
    ('Finn O''Hara',   'Counter',    'finn@shop.example',   '2020-01-27', 12.5, null,    0, 'Back in September.'),
    ('Greta Vogel',    'Bakery',     'greta@shop.example',  '2021-05-03', 38.5, 2540,    1, 'Gingerbread all year.'),
    ('Hugo Marchetti', 'Roastery',   'hugo@shop.example',   '2022-11-21', 30,   2105,    1, null),
    ('Ida Wrona',      'Office',     'ida@shop.example',    '2024-04-15', 16,   1350,    1, 'Numbers, mostly.');

-- Documents --------------------------------------------------------------------------------------------

insert into documents (title, valid) values
    ('Terms of delivery', '2027-12-31'), ('Price list for tearooms', '2026-06-30'), ('How we roast', null);

drop table temp.kinds;
drop table temp.makes;
drop table temp.given;
drop table temp.family;
drop table temp.places;
drop table temp.lessons;

commit;
