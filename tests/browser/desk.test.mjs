// A list, a form that the list feeds, and a grid of the form's lines, on one page.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('the order desk', () => {
    const visitor = demoVisitor();
    const { visit, follow, answer, query } = visitor;
    const button = (text, index = 0) => `a:text-is("${text}") >> nth=${index}`;
    const turn = (grid, command) => follow(`a[href="javascript:grid_navigate('${grid}','${command}')"]`);
    const order = (id) => query(`select * from orders where id = ${id}`)[0];
    const ids = (from, many) => query(`select id from orders order by id desc limit ${many} offset ${from}`).map(({ id }) => String(id));
    const list = () => visitor.tab.locator('[data-order] td.strong').allInnerTexts();
    const opened = async () => (await visitor.tab.locator('.order').count() ? visitor.tab.locator('.order').innerText() : null);
    const lines = () => visitor.tab.locator('form[name=sale_lines] tbody tr:has(td + td)').evaluateAll((rows) => rows.map((row) => row.cells[0].innerText));
    const place = () => visitor.tab.locator('.place').innerText();

    test('opens the order that is chosen in the list, and goes through all', async () => {
        await visit('/demo/order.asp');
        assert.deepEqual(await list(), ids(0, 6));
        assert.equal(await opened(), null);
        await follow(button('Open', 2));
        assert.equal(await opened(), ids(2, 1)[0]);
        assert.equal(await visitor.tab.locator('[aria-current] td.strong').innerText(), ids(2, 1)[0]);
        for (const [command, at] of [['next_page', 3], ['previous_page', 2], ['last_page', 1499], ['next_page', 1499], ['first_page', 0], ['previous_page', 0], ['next_page', 1]]) {
            await turn('sale', command);
            assert.deepEqual([await opened(), await place()], [ids(at, 1)[0], String(at + 1)], command);
            assert.deepEqual(await list(), ids(0, 6));
        }
        await turn('sales', 'next_page');
        assert.deepEqual([await list(), await opened()], [ids(6, 6), ids(1, 1)[0]]);
        await follow(button('Open', 5));
        assert.equal(await opened(), ids(11, 1)[0]);
        assert.deepEqual(visitor.complaints, []);
    });

    test('closes the form, where the list shows the page of its order, and opens it again', async () => {
        await visit('/demo/order.asp');
        await follow(button('As a form'));
        assert.equal(await opened(), ids(0, 1)[0]);
        for (let i = 0; i < 8; ++i) await turn('sale', 'next_page');
        await follow(button('Close'));
        assert.deepEqual([await opened(), await list()], [null, ids(6, 6)]);
        await visitor.tab.goto('/demo/order.asp');
        assert.equal(await opened(), null);
        await follow(button('Open', 1));
        assert.equal(await opened(), ids(7, 1)[0]);
    });

    test('saves in the form, and the list shows it at once', async () => {
        await visit('/demo/order.asp');
        await follow(button('Open', 3));
        const id = await opened();
        const before = order(id);
        await follow(button('Edit'));
        const { tab } = visitor;
        await tab.selectOption('[name=status_1]', 'packed');
        await tab.check('[name=paid_1]');
        await tab.fill('[name=freight_1]', 'free');
        await tab.fill('[name=note_1]', 'Two <lines>\n& a quote: "');
        await follow(button('Save'));
        assert.match(await tab.locator('.tabrixdb-message').innerText(), /freight: "free" is not a number/);
        assert.deepEqual(order(id), before);
        await tab.fill('[name=freight_1]', '4.75');
        await tab.fill('[name=shipped_1]', '2026-01-15');
        await follow(button('Save'));
        assert.deepEqual(order(id), { ...before, status: 'packed', paid: 1, freight: 4.75, shipped: '2026-01-15', note: 'Two <lines>\r\n& a quote: "' });
        assert.equal(await opened(), id);
        assert.match(await tab.locator(`[data-order="${id}"]`).innerText(), /packed[\s\S]*Yes/);
        assert.match(await tab.locator('td.record').innerText(), /15 Jan 2026[\s\S]*Two <lines>/);

        // What is typed in the form is not posted with the list.
        await follow(button('Edit'));
        await tab.fill('[name=note_1]', 'Typed');
        assert.match(await answer(false, button('Open', 0)), /not saved/);
        assert.equal(await tab.inputValue('[name=note_1]'), 'Typed');
        assert.match(await answer(true, button('Open', 0)), /not saved/);
        assert.notEqual(await opened(), id);
        assert.match(order(id).note, /^Two/);
    });

    test('deletes in the form, which shows the next order', async () => {
        await visit('/demo/order.asp');
        await follow(button('Open', 1));
        const [gone, next] = [await opened(), ids(2, 1)[0]];
        assert.equal(await answer(true, button('Delete')), 'Delete this record?');
        assert.equal(order(gone), undefined);
        assert.equal(await opened(), next);
        assert.deepEqual(await list(), ids(0, 6));
    });

    test('keeps pages and sort orders of list and lines apart', async () => {
        await visit('/demo/order.asp');
        const many = query('select order_id from order_lines group by order_id having count(*) = 5 order by order_id desc limit 1')[0].order_id;
        await follow(`[data-order="${many}"] a:text-is("Open")`);
        assert.deepEqual(await lines(), ['1', '2', '3']);
        await turn('sale_lines', 'next_page');
        assert.deepEqual([await lines(), await list(), await opened()], [['4', '5'], ids(0, 6), String(many)]);
        await follow(`a[href="javascript:grid_sort('line',' DESC ','sale_lines')"]`);
        assert.deepEqual(await lines(), ['2', '1']);
        await follow(`a[href="javascript:grid_sort('total',' DESC ','sales')"]`);
        const totals = query('select id from orders order by total desc, id desc limit 6').map(({ id }) => String(id));
        assert.deepEqual(await list(), totals);
        await follow(button('Open', 0));
        assert.equal(await opened(), totals[0]);
        const expected = query(`select line from order_lines where order_id = ${totals[0]} order by line desc limit 3`).map(({ line }) => String(line));
        assert.deepEqual(await lines(), expected);
    });
});
