// The demo's pages around files: pictures, documents, a download, bars and mail.

import assert from 'node:assert/strict';
import { existsSync, readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { demoVisitor } from './visitor.mjs';

const DOT = Buffer.from('R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7', 'base64');

describe('the pages of pictures, files and mail', () => {
    const visitor = demoVisitor();
    const { query } = visitor;
    const visit = (page) => visitor.visit(`/demo/${page}.asp`);
    const follow = (text) => Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator(`a:text-is("${text}")`).first().click()]);
    const asStranger = async (path) => (await fetch(visitor.url + path)).status;
    const texts = (selector) => visitor.tab.locator(selector).allInnerTexts();

    async function send(link, name, buffer, mimeType) {
        await visitor.tab.locator(link).first().click();
        const dialog = visitor.tab.getByRole('dialog');
        await dialog.getByLabel('File').setInputFiles({ name, mimeType, buffer });
        await dialog.getByRole('button', { name: 'Upload' }).click();
        await dialog.waitFor({ state: 'detached' });
    }

    test('every picture of the catalogue is shown, and one is replaced', async () => {
        await visit('catalogue');
        const widths = () => visitor.tab.locator('.picture').evaluateAll((images) => Promise.all(images.map((image) => image.decode().then(() => image.naturalWidth))));
        assert.deepEqual(await widths(), Array(12).fill(96));
        assert.equal(await asStranger(await visitor.tab.locator('.picture').first().getAttribute('src')), 404);
        assert.equal(await asStranger('/demo/templates/catalogue.htm'), 404);
        await visitor.follow(`a[href*="'next_page'"]`);
        assert.deepEqual(await widths(), Array(12).fill(96)); // one of these has none, and is shown the default
        await follow('Edit');
        await send('.shown a', 'dot.gif', DOT, 'image/gif');
        await follow('Save');
        assert.equal((await widths())[0], 1);
        assert.equal(query('select hex(picture) as bytes from products order by id limit 1 offset 12')[0].bytes, DOT.toString('hex').toUpperCase());
        assert.deepEqual(visitor.complaints, []);
    });

    test('a document gets a file and a date, and its link leads to the file', async () => {
        await visit('documents');
        await follow('Edit');
        await send('a:text-is("Upload")', 'Terms & more.txt', Buffer.from('Pay in time.'), 'text/plain');
        await visitor.tab.locator('a:text-is("Choose")').click();
        await visitor.tab.getByRole('dialog').getByRole('button', { name: 'December 24, 2027' }).click();
        await follow('Save');
        assert.deepEqual(query('select file, valid from documents where id = 1'), [{ file: 'Terms-more.txt', valid: '2027-12-24' }]);
        const address = await visitor.tab.locator('a:text-is("Terms-more.txt")').getAttribute('href');
        assert.equal(await (await fetch(visitor.url + address)).text(), 'Pay in time.');
        assert.deepEqual(visitor.complaints, []);
    });

    test('the bars follow their numbers, and the file holds all rows in the order that is shown', async () => {
        await visit('sales');
        await visitor.follow(`a[href*="grid_sort('revenue',' DESC '"]`);
        const stored = query('select month, orders, revenue from monthly_sales order by revenue desc');
        const bars = await visitor.tab.locator('td:nth-child(3) .tabrixdb-graph').evaluateAll((spans) => spans.map((span) => span.offsetWidth));
        assert.equal(bars[0], 220);
        assert.deepEqual(bars, [...bars].sort((a, b) => b - a));
        assert.deepEqual((await texts('td:nth-child(3)')).map((text) => text.trim()), stored.slice(0, 12).map(({ revenue }) => Math.round(revenue).toLocaleString('en-US')));
        const [download] = await Promise.all([visitor.tab.waitForEvent('download'), visitor.tab.locator('a:text-is("Download CSV")').click()]);
        assert.equal(await asStranger(new URL(download.url()).pathname), 404);
        const lines = readFileSync(await download.path(), 'utf8').split('\r\n');
        assert.equal(download.suggestedFilename(), 'MONTHLY_SALES.csv');
        assert.equal(lines[0], '"month","orders","revenue"');
        assert.deepEqual(lines.slice(1).map((line) => Number(line.split('"')[3])), stored.map(({ orders }) => orders));
        assert.deepEqual(visitor.complaints, []);
    });

    test('a mail to the shop waits in the folder, and no line break adds a header to it', async () => {
        const mails = () => (existsSync(join(visitor.site, 'mail')) ? readdirSync(join(visitor.site, 'mail')) : []);
        await visit('mail');
        await visitor.tab.getByLabel('Your e-mail address').fill('ada@example.com');
        await visitor.tab.getByLabel('Subject').fill('Grüße');
        await visitor.tab.getByLabel('Message').fill('More tea, please.');
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.getByRole('button', { name: 'Send' }).click()]);
        assert.match(await visitor.tab.getByRole('status').innerText(), /“Grüße” is on its way/);
        const [file] = mails();
        const mail = readFileSync(join(visitor.site, 'mail', file), 'utf8');
        assert.match(mail, /^From: .*ada@example\.com/m);
        assert.match(mail, /^To: "The shop"\s+<shop@shop\.example>/m);
        assert.equal((await fetch(`${visitor.url}/mail/${file}`)).status, 404);

        const post = (fields) => fetch(`${visitor.url}/demo/mail.asp`, { method: 'POST', body: new URLSearchParams({ address: 'a@b.example', subject: 's', message: 'm', ...fields }) });
        for (const address of ['', 'nobody', 'a@b.example\r\nBcc: c@d.example', 'a@b.example, c@d.example'])
            assert.match(await (await post({ address })).text(), /role="alert"/, address);
        assert.equal(mails().length, 1);
        await post({ subject: 'x\r\nBcc: c@d.example' });
        const second = readFileSync(join(visitor.site, 'mail', mails().find((name) => name !== file)), 'utf8');
        assert.doesNotMatch(second, /^Bcc/m);
        assert.deepEqual(visitor.complaints, []);
    });
});
