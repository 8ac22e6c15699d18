// What the functions of tabrixdb.js post, on a page that stands still: no server takes part.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { launchChromium } from './chromium.mjs';

const scriptOf = (url) => readFileSync(new URL(`../../site/TabrixDb${new URL(url).pathname}`, import.meta.url), 'utf8');
const site = 'http://site.test';

// A grid as the engine writes it: anchors, a form with its hidden fields, the function that names what is required.
const grid = (name, required, ...content) => `<a name='${name}_start'></a><form name="${name}" method="post"  >
<input type="hidden" name="${name}_command" value=""><input type="hidden" name="${name}_params" value="">
<input type="hidden" name="${name}_anchor" value="#tabrixdb">
<table>${content.join('\n')}</table></form><a name='${name}_end'></a><script>
function ${name}_validate() {
${required.map(([field, least]) => `document.${name}.${field}.required=${least};`).join('\r\n')}
}
</script>`;

// The second row has no inputs, as a row that is not being edited; grids in cells have forms that HTML does not allow.
const orders = grid('orders', [['Unit-Price_1', -1], ['Name_1', -1], ['Name_2', -1], ['Note_1', 5], ['Way_1', -1], ['Size_1', -1]],
    '<tr><th>Customer</th><th>Note <a href="#"><img alt="Sort Ascending" src="data:,"></a></th><th>Way</th><th>Size</th><th>Lines</th></tr>',
    `<tr><td><input name="Name_1" value="Ada"><input type="hidden" name="submit" value="a field that hides form.submit"></td>
    <td><textarea name="Note_1">Ring twice</textarea></td>
    <td><fieldset><legend>Way</legend><input type="radio" name="Way_1" value="sea"  >By sea<input type="radio" name="Way_1" value="air">By air</fieldset></td>
    <td><label><span>Size</span> <select name="Size_1"><option></option><option selected>small</option></select></label></td>
    <td><form name="lines_1" method=post></form>${grid('lines_1', [['Text_1', -1]], '<tr><td><input name="Text_1" value="one"></td></tr>')}
    <a href="javascript:edit_grid(0, 'orders','update')">Save</a></td></tr>`,
    `<tr><td>Bob</td><td></td><td></td><td></td>
    <td>${grid('lines_2', [], '<tr><td><input name="Text_1" value="two"></td></tr>')}</td></tr>`);

const page = `<!DOCTYPE html><script src="/tabrixdb.js"></script><div style="height: 3000px"></div>${orders}
<form name="bare"></form><input name="elsewhere" value="of no grid">
<div style="height: 3000px"></div>`;

describe('tabrixdb.js', () => {
    let browser, tab, posted;

    before(async () => {
        browser = await launchChromium();
        tab = await browser.newPage();
        await tab.route(`${site}/**`, (route) => {
            const request = route.request();
            if (request.url().endsWith('.js')) return route.fulfill({ contentType: 'text/javascript', body: scriptOf(request.url()) });
            if (request.method() === 'POST') posted = Object.fromEntries(new URLSearchParams(request.postData()));
            return route.fulfill({ contentType: 'text/html', body: page });
        });
    });
    after(() => browser.close());

    const open = async () => {
        posted = undefined;
        await tab.goto(`${site}/page.asp?customer=7`);
    };

    const command = (call) => Promise.all([tab.waitForNavigation(), tab.evaluate(call)]);

    for (const [call, word, params] of [
        ["grid_navigate('orders','next_page')", 'next_page', ''],
        ["grid_navigate('orders','row+')", 'row+', ''],
        ["grid_sort('Unit Price',' DESC ','orders')", 'sort', 'orders;[Unit Price] DESC '],
        ["grid_pageoffset(4, 'orders' )", 'grid_offset', '4'],
        ["edit_source('orders','edit')", 'edit_source', 'orders;edit'],
        ["edit_source('orders','cancel')", 'edit_source', 'orders;cancel'],
        ["document.orders.Way_1[0].checked = true; edit_source_onstart('orders','update')", 'edit_source', 'orders;update'],
        ["edit_grid(3, 'orders','edit')", 'edit_grid', 'orders;edit;3'],
        ["toggle_to_form('orders')", 'form_mode', ''],
        ["toggle_to_grid('orders')", 'grid_mode', ''],
        ["clear_filter('orders')", 'filter_grid_clear', ''],
        ["filter_source('orders','filter_source_clear')", 'filter_source_clear', ''],
        ["filter_grid_source('orders','filter_grid_source')", 'filter_grid_source', ''],
    ]) {
        test(`${call} posts ${word} with "${params}"`, async () => {
            await open();
            await command(call);
            assert.equal(posted.orders_command, word);
            assert.equal(posted.orders_params, params);
            assert.equal(posted.orders_anchor, '#tabrixdb');
            assert.equal(new URL(tab.url()).search, '?customer=7');
        });
    }

    test('an address that begins with two slashes posts to no other host', async () => {
        await tab.goto(`${site}//other.test/page.asp`);
        await command("grid_navigate('orders','next_page')");
        assert.equal(tab.url(), `${site}/other.test/page.asp`);
    });

    for (const [code, comparison, value, expression] of [
        [1, 'is at least', '12.5', '[Total] >= 12.5'],
        [2, 'contains', "O'Brien", "[Total] LIKE '%O''Brien%'"],
        [2, 'starts with', 'Ada', "[Total] LIKE 'Ada%'"],
        [2, 'is', 'True', "[Total] = 'True'"],
        [3, 'is less than', '2024-02-29', '[Total] < #2024-02-29#'],
    ]) {
        test(`the filter dialog posts ${expression}`, async () => {
            await open();
            await tab.evaluate(`filter_field('orders', '[Total]',${code})`);
            const dialog = tab.getByRole('dialog', { name: 'Show rows where Total' });
            await dialog.getByLabel('Comparison').selectOption(comparison);
            await dialog.getByLabel('Value').fill(value);
            await Promise.all([tab.waitForNavigation(), dialog.getByRole('button', { name: 'Filter' }).click()]);
            assert.equal(posted.orders_command, 'filter_grid');
            assert.equal(posted.orders_params, expression);
        });
    }

    test('the filter dialog posts nothing without a value, and Escape leaves it', async () => {
        await open();
        await tab.evaluate("filter_field('orders', '[Total]',1)");
        await tab.keyboard.press('Enter');
        await tab.keyboard.press('Escape');
        await tab.getByRole('dialog').waitFor({ state: 'detached' });
        assert.equal(posted, undefined);
    });

    test('an unknown form, or one that is no grid, is a message on the console', async () => {
        await open();
        for (const name of ['parcels', 'bare']) {
            const [message] = await Promise.all([
                tab.waitForEvent('console'), tab.evaluate(`grid_navigate('${name}','next_page')`)]);
            assert.equal(message.type(), 'error');
            assert.match(message.text(), new RegExp(`no grid or filter form named "${name}"`));
        }
        assert.equal(posted, undefined);
    });

    test('each grid posts its own fields, also in the rows of another', async () => {
        const hidden = (name, command) => ({ [`${name}_command`]: command, [`${name}_params`]: '', [`${name}_anchor`]: '#tabrixdb' });
        for (const [name, fields] of [
            ['lines_1', { Text_1: 'one' }], ['lines_2', { Text_1: 'two' }],
            ['orders', { Name_1: 'Ada', submit: 'a field that hides form.submit', Note_1: 'Ring twice', Size_1: 'small' }],
        ]) {
            await open();
            await command(`grid_navigate('${name}','next_page')`);
            assert.deepEqual(posted, { ...hidden(name, 'next_page'), ...fields });
        }
    });

    test('inputs are named by their captions, items by their text, and what is required is marked', async () => {
        await open();
        await tab.getByLabel('Customer').fill('Eve');
        await tab.getByLabel('Note').fill('No hurry');
        await tab.getByLabel('By air').check();
        assert.equal(await tab.locator('legend').innerText(), 'Way *');
        assert.deepEqual(await tab.locator('[aria-required=true]').evaluateAll((fields) => fields.map((field) => field.name)),
            ['Name_1', 'Note_1', 'Size_1', 'Text_1']);
        assert.equal(await tab.locator('.tabrixdb-required').count(), 5);
    });

    test('what is missing is said beside its input, and nothing is posted before it is there', async () => {
        await open();
        await tab.fill('[name=Name_1]', ' ');
        await tab.fill('[name=Note_1]', 'Ring');
        await tab.selectOption('[name=Size_1]', '');
        const focused = () => tab.evaluate('document.activeElement.name');
        const said = () => tab.getByRole('alert').allInnerTexts();
        await tab.evaluate("edit_grid(0, 'orders','update')");
        assert.deepEqual(await said(), ['Please fill this in.', 'Please give at least 5 characters.', 'Please choose.', 'Please fill this in.']);
        assert.equal(await focused(), 'Name_1');
        const described = await tab.locator('[aria-invalid=true]').evaluateAll((fields) => fields.map((field) =>
            [field.name, document.getElementById(field.getAttribute('aria-describedby')).innerText]));
        assert.deepEqual(described, [['Name_1', 'Please fill this in.'], ['Note_1', 'Please give at least 5 characters.'],
            ['Way_1', 'Please choose.'], ['Way_1', 'Please choose.'], ['Size_1', 'Please fill this in.']]);

        // Each message goes when its input is right, and saving works when none is left.
        await tab.fill('[name=Name_1]', 'Eve');
        await tab.getByLabel('By sea').check();
        await tab.selectOption('[name=Size_1]', 'small');
        assert.deepEqual(await said(), ['Please give at least 5 characters.']);
        await tab.evaluate("edit_source('orders','update')");
        assert.equal(await focused(), 'Note_1');
        assert.equal(posted, undefined);
        await tab.fill('[name=Note_1]', 'Ring once');
        assert.equal(await tab.locator('[aria-invalid], [aria-describedby]').count(), 0);
        await command("edit_grid(0, 'orders','update')");
        assert.equal(posted.orders_params, 'orders;update;0');
        assert.equal(posted.Way_1, 'sea');
    });

    test('reset_form brings the values back and takes the messages away', async () => {
        await open();
        await tab.fill('[name=Name_1]', '');
        await tab.evaluate("edit_grid(0, 'orders','update')");
        await tab.evaluate("reset_form('orders')");
        assert.equal(await tab.inputValue('[name=Name_1]'), 'Ada');
        assert.equal(await tab.getByRole('alert').count(), 0);
    });

    test('Enter in an input saves its row', async () => {
        await open();
        await tab.getByLabel('By sea').check();
        await tab.fill('[name=Name_1]', 'Eve');
        await Promise.all([tab.waitForNavigation(), tab.press('[name=Name_1]', 'Enter')]);
        assert.equal(posted.orders_command, 'edit_grid');
        assert.equal(posted.Name_1, 'Eve');
        // A grid without a save link keeps what was typed.
        posted = undefined;
        await tab.press('[name=Text_1] >> nth=1', 'Enter');
        assert.equal(posted, undefined);
    });

    test('without the calendar, a date is typed in a dialog and written as year-month-day', async () => {
        for (const [before, offered] of [['3/9/2026', '2026-03-09'], ['2026-12-31', '2026-12-31'], ['some day', '']]) {
            await open();
            await tab.fill('[name=Name_1]', before);
            await tab.evaluate("show_date('orders','Name_1')");
            const dialog = tab.getByRole('dialog', { name: 'Choose a date' });
            assert.equal(await dialog.getByLabel('Date').inputValue(), offered);
            await dialog.getByLabel('Date').fill('2027-01-15');
            await dialog.getByRole('button', { name: 'Choose' }).click();
            assert.equal(await tab.inputValue('[name=Name_1]'), '2027-01-15');
            assert.equal(await tab.evaluate('document.activeElement.name'), 'Name_1');
        }
    });

    test('an upload on a site without a handler says so', async () => {
        await open();
        for (const name of ['upload_file', 'upload_image', 'upload_to_db', 'upload_to_dbimage']) {
            await tab.evaluate(`${name}('orders','Name_1')`);
            const dialog = tab.getByRole('dialog');
            assert.equal(await dialog.getByRole('alert').innerText(), 'This site takes no files.');
            assert.equal(await dialog.getByRole('button', { name: 'Upload' }).isDisabled(), true);
            await dialog.getByRole('button', { name: 'Cancel' }).click();
        }
    });

    // The first row of the grid is being edited; a grid in it has a form of its own.
    const typing = {
        nothing: () => {},
        text: () => tab.fill('[name=Name_1]', 'Eve'),
        area: () => tab.fill('[name=Note_1]', 'Ring once'),
        choice: () => tab.getByLabel('By sea').check(),
        list: () => tab.selectOption('[name=Size_1]', ''),
        inner: () => tab.locator('[name=Text_1]').first().fill('1'),
        'text, put back': async () => { await typing.text(); await tab.fill('[name=Name_1]', 'Ada'); },
        'all, reset': async () => { await typing.text(); await typing.choice(); await typing.list(); await tab.evaluate("reset_form('orders')"); },
    };
    const lost = 'What you have typed is not saved. Go on without it?';
    for (const [typed, call, question] of [
        ...['text', 'area', 'choice', 'list', 'inner'].map((typed) => [typed, "grid_navigate('orders','next_page')", lost]),
        ...['nothing', 'text, put back', 'all, reset'].map((typed) => [typed, "grid_navigate('orders','next_page')", '']),
        ['text', "grid_sort('Name',' ASC ','orders')", lost],
        ['text', "clear_filter('orders')", lost],
        ['text', "toggle_to_form('orders')", lost],
        ['text', "edit_grid(1, 'orders','edit')", lost],
        ['text', "grid_navigate('lines_1','next_page')", lost],
        ['text', "grid_pageoffset(1, 'orders' )", ''],
        ['text', "edit_source('orders','add')", ''],
        ['text', "filter_grid_source('orders','filter_grid_source')", ''],
        ['text', "edit_grid(0, 'orders','cancel')", ''],
        ['text', "edit_source('orders','cancel')", ''],
        ['choice', "edit_grid(0, 'orders','update')", ''],
        ['choice', "edit_source('orders','update')", ''],
        ['inner', "edit_grid(0, 'orders','cancel')", lost],
        ['nothing', "edit_grid(1, 'orders','delete')", 'Delete this record?'],
        ['text', "edit_grid(1, 'orders','delete')", 'Delete this record?'],
        ['inner', "edit_grid(1, 'orders','delete')", 'Delete this record? What you have typed and not saved may be lost.'],
    ]) {
        test(`${call} after typing ${typed} asks "${question}"`, async () => {
            await open();
            await typing[typed]();
            if (question) {
                const asked = tab.waitForEvent('dialog').then(async (dialog) => { await dialog.dismiss(); return dialog.message(); });
                await tab.evaluate(call);
                assert.equal(await asked, question);
                assert.equal(posted, undefined);
                tab.once('dialog', (dialog) => dialog.accept());
            }
            await command(call);
            assert.notEqual(posted, undefined);
        });
    }

    test('the next page is shown at the old place, and reloading it does not post again', async () => {
        await open();
        await tab.evaluate('scrollTo(0, 1234)');
        await command("grid_navigate('orders','next_page')");
        assert.equal(await tab.evaluate('scrollY'), 1234);
        posted = undefined;
        await tab.reload();
        assert.equal(posted, undefined);
    });

    test('the next page is shown at the anchor that the form names, if there is one', async () => {
        await open();
        await command("document.orders.orders_anchor.value = '#orders_start'; grid_navigate('orders','next_page')");
        assert.equal(new URL(tab.url()).hash, '#orders_start');
        assert.equal(await tab.evaluate("Math.round(document.getElementsByName('orders_start')[0].getBoundingClientRect().top)"), 0);
    });
});
