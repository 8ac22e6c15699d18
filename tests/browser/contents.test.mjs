// The demo's page of contents: links, evaluated values, formats, and grids in the rows of a grid.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('the page of contents', () => {
    const visitor = demoVisitor();
    const { visit, query } = visitor;
    const follow = (grid, command) => visitor.follow(`a[href="javascript:grid_navigate('${grid}','${command}')"]`);
    const texts = (selector) => visitor.tab.locator(selector).allInnerTexts();

    /** Of each order shown: its number and the cells of its lines. */
    const shown = () => visitor.tab.evaluate(() => [...document.querySelectorAll('td.record')].map((record) => ({
        order: record.querySelector('.order').innerText,
        lines: [...record.querySelectorAll('.inner tbody tr')].filter((row) => row.cells.length > 1)
            .map((row) => [...row.cells].map((cell) => cell.innerText)),
    })));

    const orders = (from, condition = '') =>
        query(`select orders.id from orders join customers on customers.id = customer_id where shipped is not null ${condition}
            order by orders.id desc limit 4 offset ${from}`).map(({ id }) => String(id));

    const lines = (order, from) =>
        query(`select name, quantity || '' as quantity, printf('%.2f', unit_price) as price, printf('%.0f %%', discount * 100) as off,
                printf('%.2f', quantity * unit_price * (1 - discount)) as amount
            from order_lines join products on products.id = product_id where order_id = ${order}
            order by line limit 3 offset ${from}`).map(Object.values);

    /** That the page shows these orders, with each order's lines from the given one on. */
    async function expectOrders(numbers, from = [0, 0, 0, 0]) {
        assert.deepEqual(await shown(), numbers.map((order, i) => ({ order, lines: lines(order, from[i]) })));
        assert.deepEqual(visitor.complaints, []);
    }

    test('each order has its own lines', async () => {
        await visit('/demo/contents.asp');
        await expectOrders(orders(0));
    });

    test('links, dates and prices are made from the record', async () => {
        await visit('/demo/contents.asp');
        const stored = query(`select orders.id, customers.name, email, city, total, freight from orders
            join customers on customers.id = customer_id where shipped is not null order by orders.id desc limit 4`);
        assert.deepEqual(await texts('.customer'), stored.map(({ name }) => name));
        assert.deepEqual(await visitor.tab.locator('.customer a').evaluateAll((links) => links.map((link) => link.href)),
            stored.map(({ id, email }) => `mailto:${email}?subject=Order%20${id}`));
        assert.deepEqual(await texts('.sum'), stored.map(({ total }) => total.toFixed(2)));
        assert.deepEqual(await texts('.amount small'),
            stored.map(({ total, freight }) => `with ${(total / 6).toFixed(2)} tax and ${freight.toFixed(2)} freight`));
        assert.equal((await texts('.ordered'))[0], 'Friday, 17 October 2025');
        assert.equal((await texts('.shipped'))[0], '19-Oct-25');
    });

    test('a link with an encoded value leads to the orders of that city', async () => {
        await visit('/demo/contents.asp');
        await visitor.follow('.city a:text-is("Jönköping")');
        assert.equal(new URL(visitor.tab.url()).searchParams.get('city'), 'Jönköping');
        await expectOrders(orders(0, "and city = 'Jönköping'"));
        assert.deepEqual(await texts('.chosen b'), ['Jönköping']);
    });

    test('the lines of each order turn their own pages, those of the orders theirs', async () => {
        await visit('/demo/contents.asp');
        const pageOf = () => texts('.page');
        // The grid in the first row is the one whose form the browser drops on later pages.
        await follow('parcels', 'next_page');
        await expectOrders(orders(4));
        await follow('parcels', 'previous_page');
        await follow('lines_2', 'next_page');
        await expectOrders(orders(0), [0, 3, 0, 0]);
        await follow('lines_4', 'next_page');
        await expectOrders(orders(0), [0, 3, 0, 3]);
        await follow('lines_2', 'previous_page');
        await expectOrders(orders(0), [0, 0, 0, 3]);
        assert.deepEqual(await pageOf(), ['1']);
        // A grid in another row of a later page begins at its own place, as far as it has pages.
        await follow('parcels', 'last_page');
        assert.deepEqual(await pageOf(), await texts('.pages'));
        assert.deepEqual(visitor.complaints, []);
    });

    test('a command of the first row reaches its own grid in the first and in later answers', async () => {
        const [{ city }] = query(`select city from (select city, max(orders.id) as last from orders
            join customers on customers.id = customer_id where shipped is not null group by city)
            where (select count(*) from order_lines where order_id = last) > 3`);
        await visit(`/demo/contents.asp?city=${encodeURIComponent(city)}`);
        const [order] = orders(0, `and city = '${city}'`);
        for (const [command, from] of [['next_page', 3], ['previous_page', 0], ['next_page', 3]]) {
            await follow('lines_1', command);
            const [first] = await shown();
            assert.deepEqual(first, { order, lines: lines(order, from) }, command);
        }
        assert.deepEqual(visitor.complaints, []);
    });

    test('sorting the orders takes their lines along', async () => {
        await visit('/demo/contents.asp');
        await visitor.follow(`a[href*="grid_sort('total',' DESC '"]`);
        await expectOrders(query('select id from orders where shipped is not null order by total desc, id desc limit 4').map(({ id }) => String(id)));
    });

    test('the keyboard reaches the pages of the lines, and goes on where it was', async () => {
        await visit('/demo/contents.asp');
        const next = visitor.tab.locator(`a[href="javascript:grid_navigate('lines_2','next_page')"]`);
        await visitor.tab.locator('.lines').nth(1).locator('a[href]').first().focus();
        await visitor.tab.keyboard.press('Tab');
        assert.equal(await next.evaluate((link) => link === document.activeElement), true);
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.keyboard.press('Enter')]);
        await expectOrders(orders(0), [0, 3, 0, 0]);
        assert.equal(await next.evaluate((link) => link === document.activeElement), true);
    });
});
