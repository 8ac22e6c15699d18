// The filter form and the filters of captions, each comparison and connective beside the same condition asked of the database.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('searching', () => {
    const visitor = demoVisitor();
    const { visit, follow, query } = visitor;
    const button = (text) => `main a:text-is("${text}")`;

    const matching = (condition) => query(`select products.name as name, count(*) over () as n from products
        join categories on categories.id = category_id where not discontinued and (${condition}) order by products.name limit 10`);
    const shown = () => visitor.tab.locator('.stack td.strong').allInnerTexts();
    const count = async () => Number(await visitor.tab.locator('.records').innerText());

    async function expectMatching(condition) {
        const rows = matching(condition);
        assert.equal(await count(), rows[0]?.n ?? 0, condition);
        assert.deepEqual(await shown(), rows.map(({ name }) => name), condition);
    }

    /** Opens the form and searches: of each column its comparison, value and, but for the one that leads, connective. */
    async function search(...conditions) {
        await follow(button('Search form'));
        for (const [column, operator, value, joined] of conditions) {
            const field = visitor.tab.locator(`[name="${column}"]`);
            await visitor.tab.selectOption(`[name="${column}_operator"]`, operator);
            if (await field.evaluate((element) => element.matches('select'))) await field.selectOption(value);
            else await field.fill(value);
            if (joined) await visitor.tab.check(`[name="${column}_andor"][value="${joined}"]`);
        }
        await follow(button('Search'));
        assert.deepEqual(visitor.complaints, []);
    }

    test('compares by every operator that a type has', async () => {
        await visit('/demo/search.asp');
        const comparisons = ['=', '>', '<', '<=', '>=', '<>'];
        const columns = [
            ['Product', 'products.name', 'Milk, bar', ["'Milk, bar'"]],
            ['Price', 'price', '14.5', ['14.5']],
            ['In_stock', 'stock', '66', ['66']],
            ['New_since', 'added', '2024-07-05', ["'2024-07-05'"]],
        ];
        for (const [name, column, value, [literal]] of columns)
            for (const operator of comparisons) {
                await search([name, operator, value]);
                await expectMatching(`${column} ${operator} ${literal}`);
            }
        for (const pattern of ['%tea%', 'Milk*', '%, b%']) {
            await search(['Product', 'LIKE', pattern]);
            await expectMatching(`products.name like '${pattern.replace('*', '%')}'`);
        }
    });

    test('joins conditions by And and Or, the first that has a value leading', async () => {
        await visit('/demo/search.asp');
        for (const [conditions, expected] of [
            [[['Product', 'LIKE', 'M%'], ['Price', '<', '10', 'And']], "products.name like 'M%' and price < 10"],
            [[['Product', 'LIKE', 'M%'], ['Price', '>', '50', 'Or']], "products.name like 'M%' or price > 50"],
            [[['Product', 'LIKE', 'M%'], ['Category', '=', 'Tea', 'Or'], ['Price', '<', '9', 'And']],
                "products.name like 'M%' or categories.name = 'Tea' and price < 9"],
            [[['Category', '=', 'Honey & jam', 'Or'], ['In_stock', '>', '60', 'And']], "categories.name = 'Honey & jam' and stock > 60"],
            [[['In_stock', '<', '5', 'And'], ['New_since', '>=', '2024-01-01', 'Or']], "stock < 5 or added >= '2024-01-01'"],
            [[['Price', '>', '1000']], 'false'],
            [[], 'true'],
        ]) {
            await search(...conditions);
            await expectMatching(expected);
        }
    });

    test('shows and hides its form, keeps the search on other pages, and ends it', async () => {
        await visit('/demo/search.asp');
        const forms = () => visitor.tab.locator('form[name=catalogue]').count();
        assert.equal(await forms(), 0);
        await follow(button('Search form'));
        assert.equal(await forms(), 1);
        await follow(button('Hide it'));
        assert.equal(await forms(), 0);
        await search(['Product', 'LIKE', '%tea%']);
        assert.equal(await forms(), 0);
        assert.match(await visitor.tab.locator('.chosen').innerText(), /\[Product\] LIKE '%tea%'/);
        await follow(`a[href*="'next_page'"]`);
        await visitor.tab.goto('/demo/search.asp');
        assert.equal(await count(), matching("products.name like '%tea%'")[0].n);
        await follow(button('Search form'));
        await follow(button('Show all products'));
        await expectMatching('true');
        // Enter searches, too, and a date can be chosen.
        await follow(button('Search form'));
        await visitor.tab.selectOption('[name=New_since_operator]', '>=');
        await visitor.tab.fill('[name=New_since]', '2024-07-31');
        await visitor.tab.click(button('Choose'));
        await visitor.tab.getByRole('dialog').getByRole('button', { name: 'July 5, 2024' }).click();
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.press('[name=New_since]', 'Enter')]);
        await expectMatching("added >= '2024-07-05'");
    });

    test('says what it does not understand, and leads back', async () => {
        await visit('/demo/search.asp');
        for (const [column, operator, value] of [['Product', '=', "x' or '1'='1"], ['Price', '>', 'cheap; drop table products'], ['New_since', '=', 'soon']]) {
            await search([column, operator, value]);
            assert.match(await visitor.tab.getByRole('alert').innerText(), /could not finish/);
            await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.getByRole('button', { name: 'Show all records' }).click()]);
            await expectMatching('true');
        }
    });

    test('the icons in captions filter by one column until they are clicked again', async () => {
        await visit('/demo/search.asp');
        for (const [column, comparison, value, condition] of [
            ['Category', 'contains', 'A', "categories.name like '%a%'"],
            ['Product', 'starts with', 'Milk', "products.name like 'Milk%'"],
            ['Product', 'is not', "O'Brien", "products.name <> 'O''Brien'"],
            ['In stock', 'is at most', '12', 'stock <= 12'],
            ['New since', 'is less than', '2019-06-30', "added < '2019-06-30'"],
        ]) {
            await visitor.tab.click(`a[href*="'[${column}]'"]`);
            await visitor.tab.getByLabel('Comparison').selectOption(comparison);
            await visitor.tab.getByLabel('Value').fill(value);
            await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.keyboard.press('Enter')]);
            await expectMatching(condition);
            await follow('a[href*="clear_filter"]');
            await expectMatching('true');
        }
    });

    test('the fast grid has the first rows of its query', async () => {
        await visit('/demo/fast.asp');
        const rows = await visitor.tab.locator('.fast tr').evaluateAll((all) => all.map((row) => [...row.cells].map((cell) => cell.innerText.trim())));
        assert.deepEqual(rows[0], ['', 'Customer', 'City', 'Orders', 'Spent', 'Last parcel']);
        const stored = query(`select customers.name, customers.city, count(*) || '' as orders, printf('%.2f', sum(total)) as spent, max(date(shipped)) as last
            from customers join orders on customers.id = customer_id group by customers.id order by sum(total) desc, customers.id limit 12`);
        assert.deepEqual(rows.slice(1, -1), stored.map(Object.values));
    });
});
