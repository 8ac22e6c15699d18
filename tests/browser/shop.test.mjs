// A newcomer's way through the demo shop: every page, every button, and what the database says about it.

import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { root } from './server.mjs';
import { demoVisitor } from './visitor.mjs';

const pages = readdirSync(join(root, 'site/demo')).filter((file) => file.endsWith('.asp')).sort();

describe('the demo shop', () => {
    const visitor = demoVisitor();
    const { visit, follow, query } = visitor;
    const navigate = (command, page) => follow(`a[href*="'${command}'"]`, page);
    const sortBy = (field, direction) => follow(`a[href*="grid_sort('${field}',' ${direction} '"]`);
    const text = (selector, page = visitor.tab) => page.locator(selector).innerText();

    /** The texts of a grid's data rows, without its captions and its bar, and without the cell of buttons if there is one. */
    async function cells(grid, page = visitor.tab) {
        return page.evaluate((name) => {
            const rows = [...document.querySelectorAll(`form[name="${name}"] tr`)];
            const data = rows.filter((row) => row.cells.length > 1 && !row.querySelector('th, [href*="grid_sort"]'));
            return data.map((row) => [...row.cells].filter((cell) => !cell.querySelector('[href*="edit_grid"]'))
                .map((cell) => cell.innerText.trim()));
        }, grid);
    }

    const column = async (grid, index) => (await cells(grid)).map((row) => row[index]);
    const ids = (sql) => query(sql).map((row) => String(Object.values(row)[0]));

    test('the address of the site leads to the index, and its cards to all pages', async () => {
        await visit('/');
        assert.equal(new URL(visitor.tab.url()).pathname, '/demo/');
        const facts = await visitor.tab.locator('.facts dd').allInnerTexts();
        assert.deepEqual(facts, ['240', '120', '1,500', '4,500']);
        const files = await visitor.tab.locator('.card h2 a').evaluateAll((links) => links.map((link) => link.getAttribute('href')));
        assert.deepEqual([...files].sort(), pages.filter((file) => file !== 'default.asp'));
        for (const file of files) {
            await visitor.tab.goto('/demo/');
            const [response] = await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator(`.card a[href="${file}"]`).click()]);
            assert.equal(response.status(), file === 'error.asp' ? 500 : 200, file);
            assert.equal(await visitor.tab.evaluate('document.compatMode'), 'CSS1Compat', `${file} writes something before its doctype`);
        }
        assert.deepEqual(visitor.complaints.filter((complaint) => !complaint.includes('status of 500')), []);
    });

    test('the smallest grid shows the first rows of its query, as the database has them', async () => {
        await visit('/demo/smallest.asp');
        const shown = await cells('products');
        const stored = query('select id, name, price, stock from products limit 10').map(Object.values);
        assert.deepEqual(shown.map((row) => row.slice(0, 4)), stored.map((row) => row.map(String)));
        assert.deepEqual(shown.map((row) => row[4]).slice(0, 2), ['6/29/2019', '10/4/2019']);
        assert.equal(await visitor.tab.getByRole('link', { name: 'Delete' }).count(), 10);
    });

    test('next, previous, last and first page', async () => {
        await visit('/demo/smallest.asp');
        const first = ids('select id from products limit 10');
        for (const [command, expected] of [
            ['next_page', ids('select id from products limit 10 offset 10')],
            ['last_page', ids('select id from products limit 10 offset 110')],
            ['next_page', ids('select id from products limit 10 offset 110')],
            ['previous_page', ids('select id from products limit 10 offset 100')],
            ['first_page', first],
            ['previous_page', first],
        ]) {
            await navigate(command);
            assert.deepEqual(await column('products', 0), expected, command);
        }
        assert.deepEqual(visitor.complaints, []);
    });

    test('the template of its own shows counters, stripes, and more and fewer rows', async () => {
        await visit('/demo/orders.asp');
        const order = 'select id from orders order by id desc';
        const state = async () => [await text('.page'), await text('.pages'), await text('.rows'), await text('.shown'), await text('.records')];
        assert.deepEqual(await state(), ['1', '125', '12', '[1-12]', '1500']);
        assert.deepEqual(await column('orders', 0), ids(`${order} limit 12`));
        assert.equal(await visitor.tab.locator('tr.stripe').count(), 6);
        for (const [command, expected] of [
            ['row+', ['1', '84', '18', '[1-18]', '1500']],
            ['next_page', ['2', '84', '18', '[19-36]', '1500']],
            ['row-', ['2', '125', '12', '[13-24]', '1500']],
            ['row-', ['2', '250', '6', '[7-12]', '1500']],
            ['row-', ['2', '250', '6', '[7-12]', '1500']],
            ['last_page', ['250', '250', '6', '[1495-1500]', '1500']],
            ['row+', ['125', '125', '12', '[1489-1500]', '1500']],
        ]) {
            await navigate(command);
            assert.deepEqual(await state(), expected, command);
            const [from, to] = expected[3].match(/\d+/g).map(Number);
            assert.deepEqual(await column('orders', 0), ids(`${order} limit ${to - from + 1} offset ${from - 1}`), command);
        }
    });

    test('formats and captions of the page stand in the grid', async () => {
        await visit('/demo/orders.asp');
        assert.deepEqual(await visitor.tab.locator('th').evaluateAll((heads) => heads.map((head) => head.innerText.trim())),
            ['Order', 'Ordered', 'Customer', 'Country', 'Status', 'Paid', 'Total']);
        const [row] = await cells('orders');
        assert.deepEqual(row, ['11500', '22 Nov 2025', 'Håkon Esposito', 'United Kingdom', 'new', 'False', '212.90']);
    });

    test('three files make one table', async () => {
        await visit('/demo/three_files.asp');
        assert.equal(await visitor.tab.locator('form[name=customers] table').count(), 1);
        const [row] = await cells('customers');
        assert.deepEqual(row, ['Ada Andersen', '', 'Aarhus', 'Denmark', '2015']);
        await navigate('last_page');
        assert.equal(await text('.page'), '24');
        assert.deepEqual(await column('customers', 0), ids('select name from customers order by id limit 10 offset 230'));
    });

    test('a click sorts up and down, by value and not by text', async () => {
        await visit('/demo/sorted.asp');
        const list = 'select products.name from products join categories on categories.id = category_id where not discontinued order by';
        assert.deepEqual(await column('prices', 0), ids(`${list} categories.name, price desc limit 15`));
        for (const [direction, order] of [['DESC', 'desc'], ['ASC', 'asc']]) {
            await sortBy('price', direction);
            const prices = (await column('prices', 2)).map(Number);
            assert.deepEqual(prices, ids(`select price from products where not discontinued order by price ${order} limit 15`).map(Number));
        }
        await navigate('last_page');
        const prices = (await column('prices', 2)).map(Number);
        assert.equal(prices.at(-1), 81.2, 'the order holds on every page');
    });

    test('a filter keeps some rows until it is cleared', async () => {
        await visit('/demo/orders.asp');
        const keep = async (field, comparison, value) => {
            await visitor.tab.locator(`a[href*="filter_field('orders', '[${field}]'"]`).click();
            await visitor.tab.getByLabel('Comparison').selectOption(comparison);
            await visitor.tab.getByLabel('Value').fill(value);
            await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.getByRole('button', { name: 'Filter' }).click()]);
        };
        const orders = 'select count(*) from orders join customers on customers.id = customer_id where';
        for (const [field, comparison, value, condition] of [
            ['customer', 'contains', "o'brien", "customers.name like '%o''brien%'"],
            ['country', 'is', 'Türkiye', "country = 'Türkiye'"],
            ['total', 'is more than', '900.5', 'total > 900.5'],
            ['ordered', 'is at least', '2025-11-01', "ordered >= '2025-11-01'"],
        ]) {
            await keep(field, comparison, value);
            assert.equal(await text('.records'), ids(`${orders} ${condition}`)[0], condition);
            await follow('a[href*="clear_filter"]');
            assert.equal(await text('.records'), '1500');
        }
    });

    test('two visitors keep their own pages', async () => {
        await visit('/demo/orders.asp');
        const other = await (await visitor.newContext()).newPage();
        await other.goto('/demo/orders.asp');
        await navigate('last_page');
        await navigate('next_page', other);
        await visitor.tab.goto('/demo/orders.asp');
        await other.goto('/demo/orders.asp');
        assert.equal(await text('.page'), '125');
        assert.equal(await text('.page', other), '2');
        await other.context().close();
    });

    test('reloading after a command shows the same page again', async () => {
        await visit('/demo/orders.asp');
        await navigate('next_page');
        await visitor.tab.reload();
        assert.equal(await text('.page'), '2');
    });

    test('errors have a page with what happened, and the server goes on', async () => {
        for (const [kind, what] of [
            ['table', /no such table: no_such_table/],
            ['connection', /CreateSource/],
            ['source', /CreateGrid -\s*orders/],
            ['duplicate', /CreateSource/],
            ['template', /File .*not_written_yet\.htm Not Found/],
        ]) {
            const response = await visit(`/demo/error.asp?kind=${kind}`);
            const shown = await visitor.tab.getByRole('alert').innerText();
            assert.match(shown, what, kind);
            assert.match(shown, new RegExp(`Page: ${visitor.url}/demo/error\\.asp\\?kind=${kind}`), kind);
            assert.equal((await visitor.tab.content()).includes('This line is not reached'), false, kind);
            assert.equal(response.status(), 500, kind);
        }
        const response = await visit('/demo/error.asp?kind=script');
        assert.equal(response.status(), 500);
        assert.match(await visitor.tab.innerText('body'), /800a000d[\s\S]*Type mismatch/);
        assert.equal((await visit('/demo/nowhere.asp')).status(), 404);
        assert.equal((await visit('/demo/orders.asp')).status(), 200);
    });

    test('sources, settings and the database are not served', async () => {
        for (const path of ['/tabrixdb.toml', '/demo/data/shop.db', '/demo/shop.sql', '/../CMakeLists.txt', '/%2e%2e/CMakeLists.txt', '/demo/..%2f..%2fCMakeLists.txt']) {
            const response = await fetch(visitor.url + path);
            assert.ok([400, 403, 404].includes(response.status), `${path}: ${response.status}`);
        }
        const page = await (await fetch(`${visitor.url}/demo/orders.asp::$DATA`)).text();
        assert.equal(page.includes('CreateSource "orders", _'), false);
    });

    test('every page fits a telephone', async () => {
        await visit('/demo/');
        await visitor.tab.setViewportSize({ width: 390, height: 844 });
        for (const file of pages.filter((file) => file !== 'smallest.asp')) {
            await visitor.tab.goto(`/demo/${file}`);
            assert.ok(await visitor.tab.evaluate('document.documentElement.scrollWidth <= innerWidth'), file);
        }
    });
});
