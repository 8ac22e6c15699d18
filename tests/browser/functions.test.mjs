// What the functions of tabrixdb.js post, on a page that stands still: no server takes part.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { launchChromium } from './chromium.mjs';

const script = readFileSync(new URL('../../site/TabrixDb/tabrixdb.js', import.meta.url), 'utf8');
const site = 'http://site.test';

const page = `<!DOCTYPE html><script src="/tabrixdb.js"></script><div style="height: 3000px"></div>
<a name="orders_start"></a>
<form name="orders" method="post">
<input type="hidden" name="orders_command" value=""><input type="hidden" name="orders_params" value="">
<input type="hidden" name="orders_anchor" value="#tabrixdb">
<input name="submit" value="a field that hides form.submit"><input name="Name_1" value="Ada"></form>
<form name="bare"></form>
<script>function orders_validate() { document.orders.Name_1.required = -1; document.orders.Name_2.required = -1; }</script>
<div style="height: 3000px"></div>`;

describe('tabrixdb.js', () => {
    let browser, tab, posted;

    before(async () => {
        browser = await launchChromium();
        tab = await browser.newPage();
        await tab.route(`${site}/**`, (route) => {
            const request = route.request();
            if (request.url().endsWith('.js')) return route.fulfill({ contentType: 'text/javascript', body: script });
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
        ["edit_source('orders','update')", 'edit_source', 'orders;update'],
        ["edit_source_onstart('orders','update')", 'edit_source', 'orders;update'],
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

    test('a required input that is empty is not saved, and reset_form brings its value back', async () => {
        await open();
        await tab.fill('[name=Name_1]', '');
        await tab.evaluate("edit_source('orders','update')");
        assert.equal(await tab.evaluate("document.querySelector('[name=Name_1]').matches(':focus:invalid')"), true);
        assert.equal(posted, undefined);
        await tab.evaluate("reset_form('orders')");
        assert.equal(await tab.inputValue('[name=Name_1]'), 'Ada');
    });

    test('a delete asks first', async () => {
        await open();
        tab.once('dialog', (dialog) => dialog.dismiss());
        await tab.evaluate("edit_grid(0, 'orders','delete')");
        assert.equal(posted, undefined);
        tab.once('dialog', (dialog) => dialog.accept());
        await command("edit_grid(0, 'orders','delete')");
        assert.equal(posted.orders_params, 'orders;delete;0');
    });

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
