import { chromium } from 'playwright-core';

/** Debian's Chromium, without its own traffic to the network. */
export function launchChromium() {
    return chromium.launch({
        executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
        args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
            '--disable-background-networking', '--disable-component-update', '--disable-sync'],
    });
}
