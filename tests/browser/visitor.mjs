// Visitors of the demo site, for the tests of one describe().

import assert from 'node:assert/strict';
import { after, before } from 'node:test';
import { launchChromium } from './chromium.mjs';
import { query, startServer } from './server.mjs';

/** Has a server and a browser while the tests run; extra is a folder whose files are laid over the site. tab is the visitor's page, complaints what the browser said about it. */
export function demoVisitor({ extra } = {}) {
    let server, browser, context;
    const visitor = {
        tab: undefined,
        complaints: [],

        get url() { return server.url; },
        get site() { return server.site; },

        /** The rows of a query on the shop's database. */
        query: (sql) => query(server.site, sql),

        newContext: () => browser.newContext({ baseURL: server.url }),

        /** Comes as somebody else: new cookies, no complaints. */
        async visit(path) {
            await context?.close();
            context = await visitor.newContext();
            visitor.tab = await context.newPage();
            visitor.complaints = [];
            visitor.tab.on('console', (message) => message.type() === 'error' && visitor.complaints.push(message.text()));
            visitor.tab.on('pageerror', (error) => visitor.complaints.push(error.message));
            return visitor.tab.goto(path);
        },

        follow: (link, page = visitor.tab) => Promise.all([page.waitForNavigation(), page.locator(link).first().click()]),

        /** Clicks a link that asks something, and answers. Gives the question. */
        async answer(accept, link, page = visitor.tab) {
            const question = page.waitForEvent('dialog').then(async (dialog) => {
                await (accept ? dialog.accept() : dialog.dismiss());
                return dialog.message();
            });
            const click = () => page.locator(link).first().click();
            const [asked] = await Promise.all([question, accept ? page.waitForNavigation() : undefined, click()]);
            return asked;
        },
    };

    before(async () => {
        server = await startServer({ extra });
        browser = await launchChromium();
    });
    after(async () => {
        await browser?.close();
        assert.equal(await server?.stop(), 0, 'the server stops cleanly');
    });
    return visitor;
}
