// Rows edited in place, whole pages, and forms of their own: by clicks and keys, and what the database holds afterwards.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('editing', () => {
    const visitor = demoVisitor();
    const { visit, follow, answer, query } = visitor;
    const button = (text, index = 0) => `a:text-is("${text}") >> nth=${index}`;
    const command = (word) => `a[href*="'${word}'"]`;
    const message = (page = visitor.tab) => page.locator('.tabrixdb-message').innerText();
    const values = (row) => visitor.tab.locator(`[name$="_${row}"]`).evaluateAll((fields) =>
        Object.fromEntries(fields.map((field) => [field.name, field.type === 'checkbox' ? field.checked : field.value])));
    const editedRows = () => visitor.tab.locator('tr:has(input:not([type=hidden]))').count();

    async function fill(entries, page = visitor.tab) {
        for (const [name, value] of Object.entries(entries)) {
            const field = page.locator(`[name="${name}"]`);
            if (typeof value === 'boolean') await field.setChecked(value);
            else if (await field.evaluate((element) => element.matches('select'))) await field.selectOption(value);
            else await field.fill(value);
        }
    }

    describe('a row', () => {
        const customer = (id) => query(`select * from customers where id = ${id}`)[0];
        const names = () => visitor.tab.locator('tbody tr label.strong').evaluateAll((cells) => cells.map((cell) => cell.lastChild.textContent.trim()));

        test('is saved with text, numbers, dates, boxes and nothing at all', async () => {
            await visit('/demo/customers.asp');
            await follow(button('Edit', 1));
            assert.equal(await editedRows(), 1);
            assert.deepEqual(await values(2), { name_2: 'Björn Brontë', company_2: 'Brontë Tearooms', email_2: 'bjorn.bronte@example.org',
                phone_2: '+49 183 17919', city_2: 'Hamburg', country_2: 'Germany', since_2: '7/20/2018', newsletter_2: true, credit_limit_2: '2885.5' });
            await fill({ name_2: 'Bj <ö> rn & "Söhne"', company_2: '', email_2: "o'b@example.org", since_2: '2020-02-29', newsletter_2: false, credit_limit_2: '1234.5' });
            await follow(button('Save'));
            const { phone, city, country, ...changed } = customer(2);
            assert.deepEqual([phone, city, country], ['+49 183 17919', 'Hamburg', 'Germany']);
            assert.deepEqual(changed, { id: 2, name: 'Bj <ö> rn & "Söhne"', company: changed.company, email: "o'b@example.org", since: '2020-02-29', newsletter: 0, credit_limit: 1234.5 });
            assert.equal(changed.company ?? '', '');
            assert.equal(await editedRows(), 0);
            assert.equal((await names())[1], 'Bj <ö> rn & "Söhne"');

            await follow(button('Edit', 1));
            await fill({ name_2: 'Björn', credit_limit_2: '' });
            await follow(button('Save'));
            assert.deepEqual([customer(2).name, customer(2).credit_limit ?? null], ['Björn', null]);
            assert.deepEqual(visitor.complaints, []);
        });

        test('that an address asks to delete is deleted by the button of the question only', async () => {
            const { length } = query('select id from customers');
            await visit('/demo/customers.asp?clients_command=edit_grid&clients_params=clients;delete;1');
            assert.match(await message(), /^Delete this record\?\s+Delete$/);
            assert.equal(query('select id from customers').length, length);
            await follow('form.tabrixdb-message button');
            assert.equal(await message(), 'Nothing was deleted: FOREIGN KEY constraint failed'); // he has orders
            assert.equal(new URL(visitor.tab.url()).search, '');
        });

        test('that is cancelled is as it was', async () => {
            await visit('/demo/customers.asp');
            const before = customer(3);
            await follow(button('Edit', 2));
            await fill({ name_3: 'Nobody', credit_limit_3: 'x' });
            await follow(button('Cancel'));
            assert.deepEqual(customer(3), before);
            assert.equal((await names())[2], before.name);
        });

        test('is not saved when a value is refused, and shows why and what was typed', async () => {
            await visit('/demo/customers.asp');
            const before = customer(4);
            await follow(button('Edit', 3));
            const typed = { name_4: 'Dm', email_4: 'ada.andersen@example.com', since_4: '2020-02-30', credit_limit_4: 'much' };
            for (const [what, correction] of [
                [/Since: "2020-02-30" is not a date/, { since_4: '2020-02-28' }],
                [/Credit: "much" is not a number/, { credit_limit_4: '12' }],
                [/Nothing was saved: UNIQUE constraint failed: customers\.email/, {}],
            ]) {
                await fill(typed);
                await follow(button('Save'));
                assert.match(await message(), what);
                const shown = await values(4);
                for (const [name, value] of Object.entries(typed)) assert.equal(shown[name], value);
                assert.deepEqual(customer(4), before);
                Object.assign(typed, correction);
            }
            // It is typed, and not saved: leaving the page of the grid asks.
            assert.match(await answer(false, command('next_page')), /not saved/);
            assert.equal((await values(4)).name_4, 'Dm');
            await follow(button('Cancel'));
            await follow(command('next_page'));
        });

        test('that is required is asked for beside its field, also in a new record, each by itself', async () => {
            await visit('/demo/customers.asp');
            await follow(button('Edit', 0));
            await follow(button('New customer'));
            const { tab } = visitor;
            await fill({ name: 'New', city: 'Ulm', country: 'Germany', name_1: '' });
            await tab.locator(button('Save', 0)).click();
            const alerts = tab.getByRole('alert');
            await alerts.first().waitFor();
            assert.deepEqual(await alerts.allInnerTexts(), ['Please fill this in.']);
            assert.equal(await alerts.evaluate((alert) => alert.previousElementSibling.querySelector('input').name), 'email');
            await tab.locator(button('Save', 1)).click();
            await tab.waitForFunction(() => document.activeElement.name === 'name_1');
        });

        test('is added, and deleted when that is wanted', async () => {
            await visit('/demo/customers.asp');
            const count = () => query('select count(*) as n from customers')[0].n;
            const before = count();
            await follow(button('New customer'));
            assert.equal(await visitor.tab.evaluate('document.activeElement.name'), 'name');
            await fill({ name: 'Zoë <new>', email: 'ada.andersen@example.com', city: 'Ulm', country: 'Germany', newsletter: true, since: '2024-05-06' });
            await follow(button('Save'));
            assert.match(await message(), /UNIQUE constraint/);
            assert.equal(await visitor.tab.inputValue('[name=name]'), 'Zoë <new>');
            await fill({ email: 'zoe@example.com' });
            await follow(button('Save'));
            const [added] = query("select * from customers where email = 'zoe@example.com'");
            assert.deepEqual([added.name, added.since, added.newsletter, added.company ?? '', added.credit_limit], ['Zoë <new>', '2024-05-06', 1, '', null]);
            assert.equal(count(), before + 1);

            await follow(command('last_page'));
            const shown = await names();
            assert.equal(shown.at(-1), 'Zoë <new>');
            const last = button('Delete', shown.length - 1);
            assert.equal(await answer(false, last), 'Delete this record?');
            assert.equal(count(), before + 1);
            await answer(true, last);
            assert.equal(count(), before);
            assert.deepEqual(query("select id from customers where email = 'zoe@example.com'"), []);
        });

        test('that two edit is saved for the first, and the second is told', async () => {
            await visit('/demo/customers.asp');
            const other = await (await visitor.newContext()).newPage();
            await other.goto('/demo/customers.asp');
            await follow(button('Edit', 5));
            await follow(button('Edit', 5), other);
            await fill({ city_6: 'Lyon', credit_limit_6: '500' }, other);
            await follow(button('Save'), other);
            await fill({ city_6: 'Brest', phone_6: '+33 1' });
            await follow(button('Save'));
            assert.match(await message(), /somebody else has changed this record[\s\S]*City: Lyon[\s\S]*Credit: 500/);
            assert.deepEqual([customer(6).city, customer(6).credit_limit], ['Lyon', 500]);
            assert.deepEqual([(await values(6)).city_6, (await values(6)).phone_6], ['Brest', '+33 1']);
            await follow(button('Cancel'));
            for (const page of [visitor.tab, other]) {
                await page.goto('/demo/customers.asp');
                assert.match(await page.locator('tbody tr').nth(5).innerText(), /Lyon[\s\S]*500\.00/);
            }
            await other.context().close();
        });
    });

    describe('a whole page', () => {
        const products = () => query('select id, price, stock, weight_kg, discontinued from products order by id limit 10');

        test('is saved at once, or not at all', async () => {
            await visit('/demo/prices.asp');
            const before = products();
            await follow(button('Edit this page'));
            assert.equal(await editedRows(), 10);
            for (const [wrong, what, right] of [
                [{ stock_9: '9.9.9' }, /In stock: "9.9.9" is not a number that fits here/, { stock_9: '9' }],
                [{ weight_kg_4: 'light' }, /Weight \(kg\): "light" is not a number/, { weight_kg_4: '' }],
            ]) {
                await fill({ price_1: '11.25', discontinued_2: true, price_10: '0.5', ...wrong });
                await follow(button('Save all'));
                assert.match(await message(), what);
                assert.deepEqual(products(), before);
                assert.deepEqual([(await values(1)).price_1, (await values(2)).discontinued_2], ['11.25', true]);
                await fill(right);
            }
            await follow(button('Save all'));
            const after = structuredClone(before);
            Object.assign(after[0], { price: 11.25 });
            Object.assign(after[1], { discontinued: 1 });
            Object.assign(after[3], { weight_kg: null });
            Object.assign(after[8], { stock: 9 });
            Object.assign(after[9], { price: 0.5 });
            assert.deepEqual(products(), after);
            assert.equal(await editedRows(), 0);
        });

        test('is put back, asked about, and given up', async () => {
            await visit('/demo/prices.asp');
            const before = products();
            await follow(button('Edit this page'));
            await fill({ price_2: '1' });
            assert.match(await answer(false, command('next_page')), /not saved/);
            assert.equal((await values(2)).price_2, '1');
            await visitor.tab.click(button('Undo'));
            await visitor.tab.waitForFunction((price) => document.querySelector('[name=price_2]').value === price, String(before[1].price));
            await follow(command('next_page'));
            await follow(button('Edit this page'));
            await fill({ price_2: '1' });
            await follow(button('Cancel'));
            assert.equal(await editedRows(), 0);
            assert.deepEqual(products(), before);
        });
    });

    describe('templates of their own', () => {
        const person = (id) => query(`select * from staff where id = ${id}`)[0];

        test('edit the people of the page, and go back to the list', async () => {
            await visit('/demo/staff.asp');
            await follow(button('Edit these'));
            assert.equal(await visitor.tab.locator('td.record').count(), 6);
            await visitor.tab.reload();
            assert.equal(await visitor.tab.locator('td.record').count(), 6);
            const before = person(2);
            await fill({ role_2: 'Office', hours_2: '20', working_2: false, about_2: 'Now\nin the office', hours_3: '99' });
            await follow(button('Save all'));
            assert.match(await message(), /Nothing was saved.*hours between 1 and 48/);
            assert.deepEqual(person(2), before);
            assert.equal(await visitor.tab.inputValue('[name=about_2]'), 'Now\nin the office');
            await fill({ hours_3: '28.5' });
            await follow(button('Save all'));
            assert.deepEqual(person(2), { ...before, role: 'Office', hours: 20, working: 0, about: 'Now\r\nin the office' });
            assert.equal(person(3).hours, 28.5);
            assert.equal(await visitor.tab.locator('td.record').count(), 0);
            await follow(button('Edit these'));
            await fill({ hours_1: '1' });
            await follow(button('Back to the list'));
            assert.equal(person(1).hours, 38.5);
        });

        test('add a person, and delete one', async () => {
            await visit('/demo/staff.asp');
            await follow(button('New person'));
            assert.equal(await visitor.tab.isChecked('[name=working]'), true);
            await fill({ name: 'Aaron', role: 'Counter', email: 'amara@shop.example', started: '2026-01-07', hours: '10' });
            await follow(button('Add'));
            assert.match(await message(), /UNIQUE constraint/);
            assert.equal(await visitor.tab.inputValue('[name=role]'), 'Counter');
            await fill({ email: 'aaron@shop.example', working: false });
            await follow(button('Add'));
            const [{ id, ...added }] = query("select * from staff where name = 'Aaron'");
            assert.deepEqual(added, { name: 'Aaron', role: 'Counter', email: 'aaron@shop.example', started: '2026-01-07', hours: 10, wage: null, working: 0, about: added.about });
            assert.equal(added.about ?? '', '');
            assert.match(await visitor.tab.locator('tbody tr').first().innerText(), /Aaron/);
            await answer(true, button('Delete'));
            assert.equal(person(id), undefined);
            await follow(button('New person'));
            await follow(button('Cancel'));
            assert.equal(await visitor.tab.locator('.records').innerText(), '9');
        });
    });
});
