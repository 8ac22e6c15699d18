// The calendar that opens at a date field: by clicks and by keys.

import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

describe('the calendar of a date field', () => {
    const visitor = demoVisitor();
    const dialog = () => visitor.tab.getByRole('dialog', { name: 'Choose a date' });
    const field = () => visitor.tab.locator('[name=held_2]');
    const month = () => dialog().locator('.tabrixdb-month strong').innerText();
    const focused = () => visitor.tab.evaluate('document.activeElement.value');
    const weekdays = () => dialog().locator('th').allInnerTexts();

    /** Opens the calendar at a field with this text, in the row of the second workshop. */
    async function open(text) {
        await visitor.visit('/demo/controls.asp');
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator('a:text-is("Edit")').nth(1).click()]);
        await field().fill(text);
        await visitor.tab.locator('a:text-is("Choose")').click();
        await dialog().waitFor();
    }

    test('shows the month of what was typed, turns to others, and a click fills the field', async () => {
        await open('1/27/2026');
        assert.equal(await month(), 'January 2026');
        assert.deepEqual(await weekdays(), ['Sun', 'Mon', 'Tue', 'Wed', 'Thu', 'Fri', 'Sat']);
        assert.equal(await dialog().locator('.tabrixdb-chosen').innerText(), '27');
        assert.equal(await focused(), '2026-01-27');
        const next = dialog().getByRole('button', { name: 'Next month' });
        await next.click();
        await dialog().getByText('February 2026').waitFor();
        assert.equal(await dialog().locator('.tabrixdb-chosen').count(), 0);
        assert.equal(await next.evaluate((button) => button === document.activeElement), true);
        await dialog().getByRole('button', { name: 'Saturday, February 14, 2026' }).click();
        assert.equal(await dialog().count(), 0);
        assert.equal(await field().inputValue(), '2026-02-14');
        assert.equal(await visitor.tab.evaluate('document.activeElement.name'), 'held_2');
        assert.deepEqual(visitor.complaints, []);
    });

    test('goes by keys', async () => {
        await open('2024-01-31');
        const keys = [['ArrowRight', '2024-02-01'], ['ArrowLeft', '2024-01-31'], ['PageDown', '2024-02-29'], ['Shift+PageDown', '2025-02-28'],
            ['Shift+PageUp', '2024-02-28'], ['PageUp', '2024-01-28'], ['ArrowUp', '2024-01-21'], ['ArrowDown', '2024-01-28'],
            ['End', '2024-02-03'], ['Home', '2024-01-28']];
        for (const [key, day] of keys) {
            await visitor.tab.keyboard.press(key);
            await visitor.tab.waitForFunction((wanted) => document.activeElement.value === wanted, day);
        }
        await visitor.tab.keyboard.press('Enter');
        assert.equal(await field().inputValue(), '2024-01-28');
        await visitor.tab.locator('a:text-is("Choose")').click();
        await dialog().waitFor();
        await visitor.tab.keyboard.press('ArrowDown');
        await visitor.tab.keyboard.press('Escape');
        assert.equal(await dialog().count(), 0);
        assert.equal(await field().inputValue(), '2024-01-28');
    });

    test('shows today for what is no date', async () => {
        const today = await (await fetch(`${visitor.url}/TabrixDb/calendar.asp`)).text();
        await open('some day');
        assert.equal(await month(), today.match(/<strong[^>]*>([^<]*)/)[1]);
        assert.equal(await dialog().locator('.tabrixdb-chosen').count(), 0);
        for (const text of ['', '<b>', '9999-12-31', '100-1-1', "1' or 1", '12/31/10000']) {
            const response = await fetch(`${visitor.url}/TabrixDb/calendar.asp?date=${encodeURIComponent(text)}`);
            assert.doesNotMatch(await response.text(), /<b>/, text);
        }
    });

    test('speaks the language and begins the week as its settings say', async () => {
        const settings = join(visitor.site, 'TabrixDb/calendar_settings.asp');
        const before = readFileSync(settings, 'utf8');
        writeFileSync(settings, before.replace('CalendarLCID = 0', 'CalendarLCID = 1031'));
        await open('2026-03-05');
        assert.equal(await month(), 'März 2026');
        assert.deepEqual(await weekdays(), ['Mo', 'Di', 'Mi', 'Do', 'Fr', 'Sa', 'So']);
        assert.equal(await dialog().locator('.tabrixdb-chosen button').getAttribute('aria-label'), 'Donnerstag, 5. März 2026');
        writeFileSync(settings, before.replace('CalendarFirstDayOfWeek = 0', 'CalendarFirstDayOfWeek = 7 '));
        await open('2026-03-05');
        assert.equal((await weekdays())[0], 'Sat');
        writeFileSync(settings, before);
    });

    test('is typed where there is no calendar', async () => {
        await visitor.visit('/demo/controls.asp');
        await visitor.tab.route('**/calendar.asp*', (route) => route.abort());
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator('a:text-is("Edit")').nth(1).click()]);
        await visitor.tab.locator('a:text-is("Choose")').click();
        await dialog().getByLabel('Date').fill('2026-05-01');
        await dialog().getByRole('button', { name: 'Choose' }).click();
        assert.equal(await field().inputValue(), '2026-05-01');
    });
});
