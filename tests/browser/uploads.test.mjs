// Files from the visitor's computer into the database and into folders, and what the upload handler and the page that
// sends binary fields must not do.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readdirSync, readFileSync, rmSync, utimesSync, writeFileSync } from 'node:fs';
import { request } from 'node:http';
import { join } from 'node:path';
import { before, beforeEach, describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { demoVisitor } from './visitor.mjs';

const DOT = Buffer.from('R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7', 'base64');
const LARGEST = 24 * 1048576;

describe('uploads', () => {
    const visitor = demoVisitor({ extra: fileURLToPath(new URL('uploads_site/', import.meta.url)) });
    const place = (...names) => join(visitor.site, ...names);
    const filesIn = (...names) => (existsSync(place(...names)) ? readdirSync(place(...names)).filter((name) => name !== '.gitkeep').sort() : []);
    const waiting = () => filesIn('TabrixDb/temp');
    const until = async (condition) => {
        for (let tries = 500; !await condition(); tries -= 1) {
            assert.notEqual(tries, 0, String(condition));
            await visitor.tab.waitForTimeout(20);
        }
    };

    /** Puts a text into the settings of uploads; gives what puts the old one back. */
    function change(before, after) {
        const path = place('TabrixDb/upload_settings.asp');
        const settings = readFileSync(path, 'utf8');
        assert.notEqual(settings.search(before), -1);
        writeFileSync(path, settings.replace(before, after));
        return () => writeFileSync(path, settings);
    }

    async function withSetting(before, after, work) {
        const restore = change(before, after);
        await work().finally(restore);
    }

    before(() => { change(/UploadMaxBytes = \d+/, `UploadMaxBytes = ${LARGEST}`); });

    beforeEach(() => {
        for (const folder of ['uploads', 'TabrixDb/temp']) {
            rmSync(place(folder), { recursive: true, force: true });
            mkdirSync(place(folder));
        }
    });

    // --- In the browser

    // Records without a picture in a folder have an address that leads nowhere.
    const complaints = () => visitor.complaints.filter((text) => !text.includes('404'));

    const link = (text) => visitor.tab.locator(`a:text-is("${text}")`).first();
    const follow = (text) => Promise.all([visitor.tab.waitForNavigation(), link(text).click()]);
    const dialog = () => visitor.tab.getByRole('dialog');
    const problem = () => dialog().getByRole('alert').innerText();
    const openUpload = (call) => visitor.tab.locator(`a[href^="javascript:${call}("]`).click();
    const choose = (name, buffer, mimeType = 'application/octet-stream') => dialog().getByLabel('File').setInputFiles({ name, mimeType, buffer });

    const editSecond = () => Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator('a:text-is("Edit")').nth(1).click()]);

    async function edit(row = 1) {
        await visitor.visit('/files/default.asp');
        await Promise.all([visitor.tab.waitForNavigation(), visitor.tab.locator('a:text-is("Edit")').nth(row - 1).click()]);
    }

    async function send(call, name, buffer, mimeType) {
        await openUpload(call);
        await choose(name, buffer, mimeType);
        await dialog().getByRole('button', { name: 'Upload' }).click();
        await dialog().waitFor({ state: 'detached' });
    }

    /** The bytes of a column, as the database's own program writes them to a file. */
    function stored(column, id) {
        const path = place('stored.bin');
        visitor.query(`select writefile('${path}', ${column}) from files where id = ${id}`);
        return readFileSync(path);
    }

    test('files of every size arrive in the database as they are', async () => {
        await edit();
        for (const size of [65536, 0, 1, 65535, 65537, 20 * 1048576]) {
            const bytes = Buffer.alloc(size, 'TabrixDb\r\n--\0\xFF');
            await send('upload_to_db', 'Some file.zip', bytes);
            assert.equal(await visitor.tab.locator('.tabrixdb-sent').innerText(), 'Some file.zip');
            await follow('Save');
            assert.equal(stored('document', 1).equals(bytes), true, `${size} bytes`);
            assert.equal(visitor.query('select typeof(document) as type from files where id = 1')[0].type, 'blob');
            await until(() => waiting().length === 0);
            await follow('Edit');
        }
        assert.deepEqual(complaints(), []);
    });

    test('a picture is shown before it is sent, before it is saved and afterwards', async () => {
        await edit();
        await openUpload('upload_to_dbimage');
        await choose('dot.gif', DOT, 'image/gif');
        await dialog().getByAltText('Preview').and(visitor.tab.locator('[src^="blob:"]')).waitFor();
        await dialog().getByRole('button', { name: 'Upload' }).click();
        await dialog().waitFor({ state: 'detached' });
        assert.match(await visitor.tab.locator('a img.photo').getAttribute('src'), /^blob:/);
        await follow('Save');
        assert.equal(stored('photo', 1).equals(DOT), true);
        const shown = visitor.tab.locator('img.photo').first();
        assert.equal(await shown.getAttribute('src'), '/TabrixDb/blob.asp?varname=photo_1');
        assert.equal(await shown.evaluate((image) => image.decode().then(() => image.naturalWidth)), 1);
    });

    test('another choice takes the place of the first; cancel, undo and leaving take back what was sent', async () => {
        await edit();
        const field = visitor.tab.locator('input[name=document_1]');
        await send('upload_to_db', 'first.txt', Buffer.from('first'));
        const [first] = waiting();
        assert.equal(await field.inputValue(), first);
        await send('upload_to_db', 'second.txt', Buffer.from('second'));
        await until(() => waiting().length === 1);
        assert.equal(waiting().includes(first), false);
        assert.deepEqual(await visitor.tab.locator('.tabrixdb-sent').allInnerTexts(), ['second.txt']);

        await visitor.tab.evaluate(() => window.reset_form('files'));
        assert.equal(await field.inputValue(), '');
        await until(() => waiting().length === 0);

        await send('upload_to_db', 'third.txt', Buffer.from('third'));
        await send('upload_file', 'third.txt', Buffer.from('third'));
        assert.equal(waiting().length + filesIn('uploads/documents').length, 2);
        await follow('Cancel');
        await until(() => waiting().length + filesIn('uploads/documents').length === 0);

        await follow('Edit');
        await send('upload_to_db', 'fourth.txt', Buffer.from('fourth'));
        await visitor.tab.goto('/TabrixDb/tabrixdb.css');
        await until(() => waiting().length === 0);
        assert.deepEqual(complaints(), []);
    });

    test('closing the dialog leaves the field and the folders as they were', async () => {
        await edit();
        await openUpload('upload_to_db');
        await choose('a.txt', Buffer.from('a'));
        await dialog().getByRole('button', { name: 'Cancel' }).click();
        await openUpload('upload_to_db');
        await choose('a.txt', Buffer.from('a'));
        await visitor.tab.keyboard.press('Escape');
        assert.equal(await dialog().count(), 0);
        assert.deepEqual(waiting(), []);
        assert.equal(await visitor.tab.inputValue('input[name=document_1]'), '');
    });

    test('closing the dialog while the file is on its way leaves nothing behind', async () => {
        await edit();
        await openUpload('upload_to_db');
        await choose('slow.txt', Buffer.from('slow'));
        // A page of the same session that runs until it is told to end: the upload has arrived and waits for it.
        writeFileSync(place('files/busy.asp'), `<% Set fs = CreateObject("Scripting.FileSystemObject") : Session("busy") = 1
            Do Until fs.FileExists(Server.MapPath("go.txt")) : Loop %>`);
        await visitor.tab.evaluate(() => { fetch('busy.asp'); });
        await visitor.tab.waitForTimeout(100);
        await dialog().getByRole('button', { name: 'Upload' }).click();
        await until(() => dialog().locator('progress').evaluate((bar) => bar.value === 1));
        await dialog().getByRole('button', { name: 'Cancel' }).click();
        const discarded = visitor.tab.waitForResponse(/discard=/);
        writeFileSync(place('files/go.txt'), '');
        await discarded;
        assert.deepEqual(waiting(), []);
        assert.equal(await visitor.tab.inputValue('input[name=document_1]'), '');
    });

    test('a file waits while its record is refused, and is saved with it then', async () => {
        await edit(2);
        await send('upload_to_db', 'kept.txt', Buffer.from('kept'));
        execFileSync('sqlite3', [place('demo/data/shop.db'), "update files set title = 'Changed' where id = 2"]);
        await follow('Save');
        assert.equal(await visitor.tab.locator('.tabrixdb-message').count(), 1);
        assert.equal(await visitor.tab.locator('.tabrixdb-sent').innerText(), 'kept.txt');
        assert.equal(waiting().length, 1);
        await follow('Save');
        assert.equal(stored('document', 2).toString(), 'kept');
        await until(() => waiting().length === 0);
    });

    test('a form that the page posts itself keeps its files', async () => {
        const post = (selector, ...words) => Promise.all([visitor.tab.waitForNavigation(),
            visitor.tab.evaluate((own) => { window.words = own; }, words).then(() => visitor.tab.click(selector))]);
        const posts = { button: 'button:text-is("Post")', script: 'a:text-is("Post by script")' };
        for (const [name, selector] of Object.entries(posts)) {
            await edit(2);
            await send('upload_file', `${name}.txt`, Buffer.from(name));
            await send('upload_to_db', `${name}.txt`, Buffer.from(name));
            execFileSync('sqlite3', [place('demo/data/shop.db'), `update files set title = 'Changed for ${name}' where id = 2`]);
            await post(selector, 'edit_grid', 'files;update;1'); // refused
            assert.equal(await visitor.tab.locator('.tabrixdb-sent').innerText(), `${name}.txt`);
            await post(selector, 'edit_grid', 'files;update;1');
            assert.equal(stored('document', 2).toString(), name);
            assert.equal(visitor.query('select sheet from files where id = 2')[0].sheet, `${name}.txt`);
            await until(() => waiting().length === 0);
            assert.equal(readFileSync(place('uploads/documents', `${name}.txt`), 'utf8'), name);

            // The page that is posted to may have saved them in its own way.
            await edit(2);
            await send('upload_file', 'own.txt', Buffer.from(name));
            await send('upload_to_db', 'own.txt', Buffer.from(name));
            await post(selector, '', '');
            await edit(2);
            assert.equal(waiting().length, 1);
            assert.equal(filesIn('uploads/documents').some((file) => file.startsWith('own')), true);
            for (const file of waiting()) rmSync(place('TabrixDb/temp', file));
            rmSync(place('uploads/documents/own.txt'));
        }
        assert.deepEqual(complaints(), []);
    });

    test('files for folders get safe names of their own, and the field the name', async () => {
        await edit(2);
        for (const expected of ['Angebot-2026-neu.pdf', 'Angebot-2026-neu-2.pdf']) {
            await send('upload_file', '../Angebot (2026) "neu".PDF', Buffer.from('%PDF'));
            assert.equal(await visitor.tab.inputValue('input[name=sheet_2]'), expected);
            await follow('Save');
            assert.equal(visitor.query('select sheet from files where id = 2')[0].sheet, expected);
            await editSecond();
        }
        assert.deepEqual(filesIn('uploads/documents'), ['Angebot-2026-neu-2.pdf', 'Angebot-2026-neu.pdf']);
        await send('upload_image', 'face.gif', DOT, 'image/gif');
        assert.match(await visitor.tab.locator('[name=face_2_image]').getAttribute('src'), /^blob:/);
        await follow('Save');
        assert.equal(visitor.query('select face from files where id = 2')[0].face, 'face.gif');
        assert.equal(readFileSync(place('uploads/pictures/face.gif')).equals(DOT), true);
    });

    test('what is refused is said in the dialog, and another file can be chosen', async () => {
        await edit();
        await openUpload('upload_to_dbimage');
        await choose('text.png', Buffer.from('no picture'), 'image/png');
        await dialog().getByRole('button', { name: 'Upload' }).click();
        await until(async () => (await problem()) === 'The content of this file is not what its name says (png).');
        await choose('large.png', Buffer.alloc(LARGEST + 1), 'image/png');
        assert.equal(await problem(), 'The file is too large: 24 MB.');
        assert.equal(await dialog().getByRole('button', { name: 'Upload' }).isDisabled(), true);
        await choose('dot.gif', DOT, 'image/gif');
        await dialog().getByRole('button', { name: 'Upload' }).click();
        await dialog().waitFor({ state: 'detached' });
        assert.equal(waiting().length, 1);
    });

    // --- Without a browser

    const KEY = '0123456789abcdef'.repeat(2);
    const HANDLER = '/TabrixDb/file_upload.asp';

    /** One request; gives the status, the headers and the text of the answer. */
    const ask = (path, { method = 'GET', headers = {}, body = '' } = {}) => new Promise((resolve, reject) => {
        const sent = request(new URL(path, visitor.url), { method, headers }, (response) => {
            const parts = [];
            response.on('data', (part) => parts.push(part));
            response.on('end', () => resolve({ status: response.statusCode, headers: response.headers, body: Buffer.concat(parts) }));
        });
        sent.on('error', reject);
        sent.end(body);
    });

    const part = (name, content = 'x', boundary = 'b') => Buffer.concat([
        Buffer.from(`--${boundary}\r\nContent-Disposition: form-data; name="file"; filename="${name}"\r\n\r\n`), Buffer.from(content), Buffer.from('\r\n')]);
    const form = (...parts) => Buffer.concat([...parts, Buffer.from('--b--\r\n')]);

    async function post(body, { kind = 'database', folder = '', type = 'multipart/form-data; boundary=b', headers = { 'X-TabrixDb': 'upload' }, more = `&key=${KEY}` } = {}) {
        const answer = await ask(`${HANDLER}?kind=${kind}&folder=${encodeURIComponent(folder)}${more}`,
            { method: 'POST', headers: { 'Content-Type': type, ...headers }, body });
        return { ...answer, json: JSON.parse(answer.body) };
    }

    /** How a bitmap begins whose header has so many bytes. */
    const bitmap = (header) => Buffer.concat([Buffer.from('BM\x46\0\0\0\0\0\0\0\x36\0\0\0'), Buffer.from([header, 0, 0, 0])]);

    test('what is no upload of one good file is refused with a message, and nothing of it stays', async () => {
        const good = part('a.txt');
        const cases = [
            ['..', 415, form(part('..'))],
            ['a page', 415, form(part('x.asp'))],
            ['a page as a picture', 415, form(part('x.asp;.jpg'))],
            ['NUL in the name', 400, form(part('x.asp\0.txt'))],
            ['a control in the name', 400, form(part('x\x01.txt'))],
            ['no name', 400, form(part(''))],
            ['only folders', 400, form(part('../../'))],
            ['no ending', 415, form(part('README'))],
            ['no picture', 415, form(part('a.png', 'GIF89a'))],
            ['a text as a bitmap', 415, form(part('a.bmp', 'BMW;320i;Munich;1998'))],
            ['a bitmap as a text', 415, form(part('a.txt', bitmap(40)))],
            ['a drawing', 415, form(part('a.svg', '<svg/>'))],
            ['too large', 413, form(part('a.txt', Buffer.alloc(LARGEST + 1)))],
            ['a little too large', 413, form(part('a.txt', Buffer.alloc(LARGEST + 9000)))],
            ['cut off in the file', 400, good],
            ['cut off before its end', 400, Buffer.concat([good, Buffer.from('--b')])],
            ['cut off in the head', 400, Buffer.from('--b\r\nContent-Disposition: form-data; name="file"; file')],
            ['nothing', 400, Buffer.alloc(0)],
            ['another boundary', 400, form(part('a.txt', 'x', 'c'))],
            ['a thousand parts', 400, form(...Array(1000).fill(good))],
            ['an endless head', 400, form(part('a'.repeat(5000)))],
            ['no boundary', 400, form(good), { type: 'multipart/form-data' }],
            ['no form', 400, form(good), { type: 'text/plain; boundary=b' }],
            ['another kind', 400, form(good), { kind: 'page' }],
            ['no key', 400, form(good), { more: '' }],
            ['a key that is a path', 400, form(good), { more: '&key=../../../../../../../../../x' }],
            ['a folder of pages', 403, form(good), { kind: 'file', folder: '/demo/' }],
            ['a way out', 403, form(good), { kind: 'file', folder: '/uploads/../demo/' }],
            ['a page of another site', 403, form(good), { headers: {} }],
        ];
        for (const [name, status, body, options] of cases) {
            const answer = await post(body, options);
            assert.equal(answer.status, status, name);
            assert.match(answer.json.error, /^[A-Z].{10,}\.$/, name);
            assert.deepEqual([...waiting(), ...filesIn('uploads'), ...filesIn('uploads/documents')], [], name);
        }
    });

    test('names are made safe', async () => {
        const documents = { kind: 'file', folder: '/uploads/documents' };
        const cases = [
            ['x.asp.txt', 'x-asp.txt'], ['C:\\secret\\..\\a b.TXT', 'a-b.txt'], [`${'n'.repeat(300)}.txt`, `${'n'.repeat(60)}.txt`],
            ['con.txt', 'filecon.txt'], ['Größe.txt', 'Gr-e.txt'], ['表.txt', 'file.txt'], ['.txt', 'file-2.txt'],
            ['Fuſs\u212A.txt', 'Fu-s.txt'], ['LPT1.txt', 'fileLPT1.txt'], ['a;b|c<d>.txt', 'a-b-c-d.txt'], ['%2e%2e%2f.txt', '2e-2e-2f.txt'],
        ];
        for (const [name, expected] of cases) {
            const { json } = await post(form(part(name)), documents);
            assert.equal(json.file, expected, name);
        }
        assert.deepEqual(filesIn('uploads/documents'), cases.map(([, name]) => name).sort());
        assert.equal((await post(form(part('x.asp;.jpg', Buffer.from([0xFF, 0xD8, 0xFF, 0xE0]))))).json.file, `${KEY}-x-asp.jpg.upload`);
    });

    test('a file is taken for a bitmap by more than its first letters', async () => {
        assert.equal((await post(form(part('cars.csv', 'BMW;320i;Munich;1998')), { kind: 'file' })).json.file, 'cars.csv');
        for (const header of [12, 40, 56, 108, 124])
            assert.equal((await post(form(part('a.bmp', bitmap(header))), { kind: 'picture' })).status, 200, header);
    });

    test('two uploads at once keep both files', async () => {
        const answers = await Promise.all(Array.from({ length: 8 }, (_, i) => post(form(part('same.txt', String(i))), { kind: 'file' })));
        assert.equal(new Set(answers.map(({ json }) => json.file)).size, 8);
        const contents = filesIn('uploads').map((name) => readFileSync(place('uploads', name), 'utf8'));
        assert.deepEqual(contents.sort(), ['0', '1', '2', '3', '4', '5', '6', '7']);
    });

    test('only who has uploaded a file takes it back, and old files go by themselves', async () => {
        const mine = await post(form(part('a.txt')));
        const cookie = mine.headers['set-cookie'][0].split(';')[0];
        const discard = (key, headers) => post('', { more: `&discard=${encodeURIComponent(key)}`, headers: { 'X-TabrixDb': 'upload', ...headers } });
        for (const [key, headers] of [[KEY, {}], ['', { cookie }], [mine.json.file, { cookie }], ['../../tabrixdb.toml', { cookie }], [KEY.slice(1), { cookie }]]) {
            await discard(key, headers);
            assert.equal(waiting().length, 1);
        }
        assert.equal((await discard(KEY, { cookie })).status, 200);
        assert.deepEqual(waiting(), []);

        await post(form(part('old.txt')));
        writeFileSync(place('TabrixDb/temp/ORDERS.csv'), '');
        const yesterday = Date.now() / 1000 - 90000;
        for (const name of waiting()) utimesSync(place('TabrixDb/temp', name), yesterday, yesterday);
        // What is deleted needs no room.
        await withSetting(/UploadFolderMaxFiles = \d+/, 'UploadFolderMaxFiles = 2', () => post(form(part('new.txt')), { more: `&key=${'f'.repeat(32)}` }));
        assert.deepEqual(waiting(), [`${'f'.repeat(32)}-new.txt.upload`, 'ORDERS.csv'].sort());
    });

    test('of many uploads of one visitor, the latest can be taken back', async () => {
        const key = (number) => String(number).padStart(32, '0');
        const options = (more, cookie) => ({ kind: 'file', more, headers: { 'X-TabrixDb': 'upload', ...cookie && { cookie } } });
        const first = await post(form(part('a.txt')), options(`&key=${key(0)}`));
        const cookie = first.headers['set-cookie'][0].split(';')[0];
        for (let i = 1; i <= 60; i += 1) await post(form(part('a.txt')), options(`&key=${key(i)}`, cookie));
        assert.equal(filesIn('uploads').length, 61);
        for (let i = 0; i <= 60; i += 1) await post('', options(`&discard=${key(i)}`, cookie));
        assert.deepEqual(filesIn('uploads'), ['a.txt', ...Array.from({ length: 10 }, (_, i) => `a-${i + 2}.txt`)].sort());
    });

    test('the settings of the site decide who uploads, and how much', async () => {
        const file = (name) => post(form(part(name)), { kind: 'file' });
        await withSetting('UploadIsAllowed = True', 'UploadIsAllowed = (kind = "file")', async () => {
            assert.equal((await post(form(part('a.txt')))).json.error, 'You may not upload files here.');
            assert.equal((await file('a.txt')).status, 200);
        });
        for (const setting of ['UploadFolderMaxBytes', 'UploadFolderMaxFiles']) {
            await withSetting(new RegExp(`${setting} = \\d+`), `${setting} = ${filesIn('uploads').length + 1}`, async () => {
                for (const status of [200, 507]) assert.equal((await file('b.txt')).status, status, setting);
            });
        }
        await withSetting(/UploadTypes = ".*"/, 'UploadTypes = "md"', async () => {
            assert.equal((await file('c.md')).status, 200);
            assert.deepEqual(JSON.parse((await ask(`${HANDLER}?kind=file`)).body), { types: '.md', most: LARGEST });
        });
        assert.deepEqual(filesIn('uploads'), ['a.txt', 'b-2.txt', 'b.txt', 'c.md']);
    });

    test('nothing in the folders of uploads runs, and nothing of it is shown as a page', async () => {
        const { json } = await post(form(part('a.txt')));
        assert.equal((await ask(`/TabrixDb/temp/${json.file}`)).status, 404);
        mkdirSync(place('uploads/deep'));
        for (const name of ['x.asp', 'x.asp;.jpg', 'x.htm', 'x.svg', 'x.js', 'x.png']) writeFileSync(place('uploads/deep', name), '<% Response.Write 1 + 1 %>');
        assert.equal((await ask('/uploads/deep/x.asp')).status, 404);
        assert.equal((await ask('/UPLOADS/Deep/X.ASP')).status, 404);
        for (const [name, type, disposition] of [['x.asp;.jpg', 'image/jpeg'], ['x.png', 'image/png'],
            ['x.htm', 'application/octet-stream', 'attachment'], ['x.svg', 'application/octet-stream', 'attachment'], ['x.js', 'application/octet-stream', 'attachment']]) {
            const { headers, body } = await ask(`/uploads/deep/${name}`);
            assert.equal(headers['content-type'], type, name);
            assert.equal(headers['content-disposition'], disposition, name);
            assert.equal(headers['x-content-type-options'], 'nosniff', name);
            assert.match(String(body), /Response.Write/, name);
        }
    });

    test('the page of binary fields sends these and nothing else', async () => {
        writeFileSync(place('files/secret.asp'), `<% Application("secret") = "text" : Application("secret_1") = Request.BinaryRead(4)
            Application("TabrixDb_blob:secret") = Empty : Set db = Nothing %>`);
        await ask('/files/secret.asp', { method: 'POST', body: 'data' });
        execFileSync('sqlite3', [place('demo/data/shop.db'), "update files set photo = cast('<svg/>' as blob) where id = 1; update files set photo = null where id = 2"]);
        const cookie = (await ask('/files/default.asp')).headers['set-cookie'][0].split(';')[0];
        const blob = (name, headers = { cookie }) => ask(`/TabrixDb/blob.asp?varname=${encodeURIComponent(name)}`, { headers });
        assert.equal((await blob('photo_1', {})).status, 404); // another visitor
        const drawing = await blob('photo_1');
        assert.equal(String(drawing.body), '<svg/>');
        assert.equal(drawing.headers['content-type'], 'image/svg+xml');
        assert.match(drawing.headers['content-disposition'], /^attachment; filename="photo_1"$/);
        assert.match(drawing.headers['content-security-policy'], /sandbox/);
        assert.equal((await blob('photo_2')).status, 204);
        for (const name of ['secret', 'secret_1', 'photo', 'photo_9', 'TabrixDb_blob:photo_1', '', 'photo_1, photo_1'])
            assert.equal((await blob(name)).status, 404, name);
        const types = { 'image/png': Buffer.from('89504e470d0a1a0a00', 'hex'), 'image/gif': 'GIF89a..', 'image/jpeg': Buffer.from([255, 216, 255, 0]), 'image/webp': 'RIFF....WEBP' };
        const others = ['<script>alert(1)</script>', 'BM', 'BMW;320i;Munich;1998', bitmap(41), bitmap(40).subarray(0, 17)].map((bytes) => ['application/octet-stream', bytes]);
        const bitmaps = [12, 40, 56, 108, 124].map((header) => ['image/bmp', bitmap(header)]);
        for (const [type, bytes] of [...Object.entries(types), ...bitmaps, ...others]) {
            execFileSync('sqlite3', [place('demo/data/shop.db'), `update files set photo = x'${Buffer.from(bytes).toString('hex')}' where id = 1`]);
            await ask('/files/default.asp', { headers: { cookie } });
            const sent = await blob('photo_1');
            assert.equal(sent.headers['content-type'], type);
            assert.equal(sent.headers['content-disposition'], type.startsWith('image/') ? undefined : 'attachment; filename="photo_1"');
            assert.equal(sent.headers['x-content-type-options'], 'nosniff');
            assert.equal(sent.headers['cache-control'], 'private, no-cache');
            assert.equal(sent.body.equals(Buffer.from(bytes)), true, type);
        }
    });
});
