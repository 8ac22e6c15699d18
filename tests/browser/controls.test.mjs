// The demo's page of controls: each kind of control by clicks and keys, and what the database holds afterwards.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('the page of controls', () => {
    const visitor = demoVisitor();
    const { visit, query } = visitor;
    const link = (text, index = 0) => visitor.tab.locator(`a:text-is("${text}")`).nth(index);
    const follow = (text, index) => Promise.all([visitor.tab.waitForNavigation(), link(text, index).click()]);
    const workshop = (id) => query(`select * from workshops where id = ${id}`)[0];
    const texts = (selector) => visitor.tab.locator(selector).allInnerTexts();
    const titles = async () => (await texts('.field.title')).map((text) => text.replace('Title', '').trim());
    const field = (role, name) => visitor.tab.getByRole(role, { name: new RegExp(`^${name}`) });
    const focused = () => visitor.tab.evaluate('document.activeElement.name || document.activeElement.innerText');
    const hasControls = () => visitor.tab.locator('td.record').evaluateAll((records) =>
        records.map((record) => record.querySelector('input, select, textarea') !== null));

    /** Comes to the page and edits the row of that number, from 1: the workshops of the first page are 1 to 4. */
    async function edit(row) {
        await visit('/demo/controls.asp');
        await follow('Edit', row - 1);
    }

    const checked = (name) => visitor.tab.locator(`[name=${name}]:checked`).evaluateAll((boxes) => boxes.map((box) => box.value));
    const choices = (name) => visitor.tab.locator(`[name=${name}]`).evaluateAll((boxes) => boxes.map((box) => box.labels[0].innerText.trim()));
    const options = (name) => visitor.tab.locator(`[name=${name}] option`).allInnerTexts();

    test('a row that is edited shows a control of each kind with its value, and no other row does', async () => {
        await edit(2);
        const stored = workshop(2);
        assert.deepEqual(await hasControls(), [false, true, false, false]);
        for (const name of ['title', 'about', 'room', 'topic', 'seats', 'fee'])
            assert.equal(await visitor.tab.inputValue(`[name=${name}_2]`), String(stored[name]), name);
        assert.equal(await visitor.tab.inputValue('[name=held_2]'), '1/27/2026');
        assert.equal(stored.held, '2026-01-27');
        assert.deepEqual((await options('room_2')).sort(), ['Cellar', 'Garden', 'Kitchen', 'Loft']);
        assert.deepEqual((await options('topic_2')).filter((name) => name.trim()), query('select name from categories order by name').map(({ name }) => name));
        assert.deepEqual(await checked('bookable_2'), stored.bookable ? ['True'] : []);
        assert.deepEqual(await checked('level_2'), [stored.level]);
        assert.deepEqual(await choices('level_2'), ['Beginners', 'Everyone', 'Advanced']);
        assert.deepEqual(await checked('included_2'), stored.included.split(', '));
        assert.deepEqual(await choices('included_2'), ['Apron', 'Tea', 'Recipes']);
        assert.deepEqual(await checked('language_2'), [stored.language]);
        assert.deepEqual(await choices('language_2'), stored.languages.split(','));
        assert.deepEqual(await checked('days_2'), stored.days.split(', '));
        assert.deepEqual(await choices('days_2'), ['Monday', 'Wednesday', 'Friday']);
        assert.equal(await focused(), 'title_2');
        assert.deepEqual(visitor.complaints, []);
    });

    test('cancel, another row and another page end editing', async () => {
        await edit(1);
        await follow('Edit', 2);
        assert.deepEqual(await hasControls(), [false, false, false, true]);
        await visitor.tab.fill('[name=title_4]', 'Not to be kept');
        await follow('Cancel');
        assert.deepEqual(await hasControls(), [false, false, false, false]);
        assert.equal((await titles())[3], workshop(4).title);
        await follow('Edit', 0);
        await visitor.follow(`a[href*="'next_page'"]`);
        assert.deepEqual(await hasControls(), [false, false, false, false]);
    });

    test('text is shown as it is stored, with its markup', async () => {
        await visit('/demo/controls.asp');
        assert.equal((await titles())[0], 'Latte art <3');
        await follow('Edit', 0);
        assert.equal(await visitor.tab.inputValue('[name=title_1]'), 'Latte art <3');
    });

    test('what is required is marked, and asked for before anything is sent', async () => {
        await edit(2);
        const before = workshop(2);
        assert.equal(await field('textbox', 'Title').getAttribute('aria-required'), 'true');
        await field('textbox', 'Title').fill('');
        await field('textbox', 'About').fill('Short');
        await field('combobox', 'Topic').selectOption({ label: '' });
        await link('Save').click();
        const alerts = visitor.tab.getByRole('alert');
        assert.deepEqual(await alerts.allInnerTexts(), ['Please fill this in.', 'Please give at least 10 characters.', 'Please fill this in.']);
        assert.equal(await focused(), 'title_2');
        assert.deepEqual(workshop(2), before);
        await field('textbox', 'Title').pressSequentially('Tea');
        await field('textbox', 'About').pressSequentially(' and sweet');
        await field('combobox', 'Topic').selectOption('Tea');
        assert.equal(await alerts.count(), 0);
    });

    test('every control saves what was typed and clicked', async () => {
        await edit(3);
        const { tab } = visitor;
        await field('textbox', 'Title').fill('Chocolate & <chili> "hot", it\'s');
        await field('textbox', 'About').fill('Two lines:\n<b>spicy</b> & sweet');
        await field('combobox', 'Topic').selectOption('Spices');
        await field('combobox', 'Room').selectOption('Garden');
        await link('Choose').click();
        await tab.getByRole('dialog').getByRole('button', { name: 'February 14, 2026' }).click();
        await field('textbox', 'Seats').fill('17');
        await field('textbox', 'Fee').fill('48.25');
        await field('checkbox', 'Booking open').uncheck();
        await field('radio', 'Beginners').check();
        await field('checkbox', 'Apron').uncheck();
        await field('radio', 'German').check();
        for (const day of await tab.locator('[name=days_3]').all()) await day.check();
        await follow('Save');
        assert.deepEqual(visitor.complaints, []);
        const { id, languages, weekdays } = workshop(3);
        assert.deepEqual(workshop(3), {
            id, languages, weekdays, title: 'Chocolate & <chili> "hot", it\'s', about: 'Two lines:\r\n<b>spicy</b> & sweet', topic: 'Spices',
            room: 'Garden', held: '2026-02-14', seats: 17, fee: 48.25, bookable: 0, level: 'Beginners', included: 'tea, recipes',
            language: 'German', days: 'Mon, Wed, Fri',
        });
        assert.deepEqual(await hasControls(), [false, false, false, false]);
        const [row] = (await texts('td.record')).filter((text) => text.includes('chili'));
        for (const shown of ['Chocolate & <chili> "hot", it\'s', '<b>spicy</b> & sweet', '14 February 2026', '48.25', 'No', 'tea, recipes'])
            assert.ok(row.includes(shown), shown);

        // Boxes that are all cleared are saved, too.
        await follow('Edit', 2);
        for (const name of ['included_3', 'days_3'])
            for (const box of await tab.locator(`[name=${name}]`).all()) await box.uncheck();
        await follow('Save');
        const { included, days } = workshop(3);
        assert.deepEqual([included || null, days || null], [null, null]);
    });

    test('what can not be saved is said, and what was typed is still there', async () => {
        await edit(1);
        const before = workshop(1);
        const said = () => visitor.tab.locator('.tabrixdb-message').innerText();
        await field('textbox', 'Title').fill('Cappuccino');
        await field('textbox', 'Seats').fill('99');
        await follow('Save');
        assert.match(await said(), /Nothing was saved.*seats between 1 and 40/);
        const inSight = () => visitor.tab.locator('.tabrixdb-message').evaluate((message) => {
            const { top, bottom } = message.getBoundingClientRect();
            return message === document.activeElement && top >= 0 && bottom <= innerHeight;
        });
        await visitor.tab.setViewportSize({ width: 700, height: 400 });
        await field('textbox', 'Seats').fill('many');
        await follow('Save');
        assert.match(await said(), /Nothing was saved.*seats/);
        assert.equal(await inSight(), true);
        assert.deepEqual(workshop(1), before);
        assert.equal(await field('textbox', 'Title').inputValue(), 'Cappuccino');
        await field('textbox', 'Seats').fill('8');
        await follow('Save');
        assert.deepEqual(workshop(1), { ...before, title: 'Cappuccino', seats: 8 });
        assert.equal(await visitor.tab.locator('.tabrixdb-message').count(), 0);
    });

    test('of two who edit the same row, the second hears of the first', async () => {
        await edit(2);
        const other = await (await visitor.newContext()).newPage();
        await other.goto('/demo/controls.asp');
        await visitor.follow('a:text-is("Edit") >> nth=1', other);
        await other.fill('[name=seats_2]', '21');
        await visitor.follow('a:text-is("Save")', other);
        await field('textbox', 'Title').fill('Tea at dawn');
        await follow('Save');
        assert.match(await visitor.tab.locator('.tabrixdb-message').innerText(), /somebody else has changed this record[\s\S]*seats: 21/);
        assert.equal(workshop(2).seats, 21);
        assert.notEqual(workshop(2).title, 'Tea at dawn');
        assert.equal(await field('textbox', 'Title').inputValue(), 'Tea at dawn');
        await other.context().close();
    });

    test('the keyboard edits and saves a row, and goes on where it was', async () => {
        await visit('/demo/controls.asp');
        const { keyboard } = visitor.tab;
        const press = (key) => Promise.all([visitor.tab.waitForNavigation(), keyboard.press(key)]);
        await link('Edit', 3).focus();
        await press('Enter');
        assert.equal(await focused(), 'title_4');
        await keyboard.press('Control+A');
        await keyboard.type('Curry by keyboard');
        await keyboard.press('Tab');
        assert.equal(await focused(), 'about_4');
        await visitor.tab.locator('[name=seats_4]').focus();
        await keyboard.press('Control+A');
        await keyboard.type('12');
        await press('Enter');
        assert.equal(workshop(4).title, 'Curry by keyboard');
        assert.equal(workshop(4).seats, 12);
        assert.equal(await visitor.tab.evaluate('document.activeElement.getAttribute("href")'), "javascript:edit_grid(3, 'workshops','edit')");
    });

    test('a delete asks, and takes the row away', async () => {
        await visit('/demo/controls.asp');
        await visitor.follow(`a[href*="'last_page'"]`);
        const count = () => query('select count(*) as n from workshops')[0].n;
        const [before, title] = [count(), (await titles())[3]];
        const dismissed = new Promise((done) => { visitor.tab.once('dialog', (dialog) => done(dialog.dismiss())); });
        await link('Delete', 3).click();
        await dismissed;
        assert.equal(count(), before);
        visitor.tab.once('dialog', (dialog) => dialog.accept());
        await follow('Delete', 3);
        assert.equal(count(), before - 1);
        assert.deepEqual(query(`select id from workshops where title = '${title}'`), []);
    });
});
