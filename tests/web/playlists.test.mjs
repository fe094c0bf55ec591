// On a phone: a playlist made from the root's input row, filled through the
// menus (long press and the "more" button), renamed and deleted; a refused
// command explains itself where it was given; then the device in German.
import assert from 'node:assert/strict';
import { scenario, row, menu, shownTitles } from './harness.mjs';

scenario('create, fill, rename and delete a playlist through the menus', { phone: true, dark: true, shot: 'playlists-phone-dark' }, async ({ host, open }) => {
  const page = await open({ hash: '#' + encodeURIComponent('playlists:/root') });
  const create = page.getByPlaceholder('Create New Playlist');
  await create.fill('Road trip');
  await create.press('Enter');
  await row(page, 'Road trip').waitFor();
  assert.equal(await create.inputValue(), '');

  await page.getByRole('button', { name: 'Home', exact: true }).first().click();
  await row(page, 'Library').click();
  await row(page, 'All tracks').click();
  const box = await row(page, 'Deep G').boundingBox();
  await page.mouse.move(box.x + 80, box.y + 20);
  await page.mouse.down();
  await page.waitForTimeout(800);
  await page.mouse.up();
  for (const title of ['Deep G', 'Hum']) {
    if (title === 'Hum') await row(page, title).getByRole('button', { name: 'More' }).click();
    await menu(page).getByRole('menuitem', { name: 'Add to playlist' }).click();
    await menu(page).getByRole('menuitem', { name: 'Road trip' }).click();
    await menu(page).getByRole('menuitem', { name: 'Append' }).click();
    await menu(page).waitFor({ state: 'hidden' });
  }
  assert.deepEqual(await host.titles('playlists:/tracks/1'), ['Deep G', 'Hum']);

  await page.getByRole('button', { name: 'Home', exact: true }).first().click();
  await row(page, 'Playlists').click();
  await row(page, 'Road trip').getByRole('button').first().click();
  await row(page, 'Hum').waitFor();
  await row(page, 'Deep G').getByRole('button', { name: 'More' }).click();
  const move = menu(page).getByRole('textbox', { name: 'Move track' });
  await move.fill('99');
  await move.press('Enter');
  await menu(page).getByRole('alert').getByText(/not in valid range/).waitFor();
  assert.deepEqual(await shownTitles(page), ['Deep G', 'Hum']);
  await page.keyboard.press('Escape');
  await menu(page).waitFor({ state: 'hidden' });

  // By keyboard: down the rows past a header and a field, then the menu.
  await page.locator('#crumbs').getByRole('button', { name: 'Playlists' }).click();
  await row(page, 'PlayQueue').getByRole('button').first().focus();
  for (let i = 0; i < 3; i++) await page.keyboard.press('ArrowDown');
  await page.keyboard.press('Shift+F10');
  await menu(page).getByRole('menuitem', { name: 'Play', exact: true }).waitFor();
  await page.keyboard.press('ArrowDown');
  const rename = menu(page).getByRole('textbox', { name: 'Rename' });
  assert.equal(await rename.evaluate((el) => el === document.activeElement), true);
  await page.keyboard.press('Control+A');
  await page.keyboard.type('Long drive');
  await page.keyboard.press('Enter');
  await menu(page).getByRole('heading', { name: /Long drive$/ }).waitFor();
  await row(page, 'Long drive').waitFor();
  await menu(page).getByRole('menuitem', { name: 'Delete playlist' }).click();
  await menu(page).waitFor({ state: 'hidden' });
  await row(page, 'Long drive').waitFor({ state: 'detached' });
  assert.deepEqual(await host.titles('playlists:/lists'), ['Create new playlist']);

  await page.getByRole('combobox', { name: 'Language' }).selectOption('de');
  await page.getByRole('button', { name: 'Start', exact: true }).first().waitFor();
  assert.equal(await host.value('settings:/language'), 'de');
  const german = (await host.titles('playlists:/root'))[2];
  assert.notEqual(german, 'Create New Playlist');
  await page.getByPlaceholder(german).waitFor();
  await page.getByRole('region', { name: 'Es läuft' }).getByText('Nichts läuft').waitFor();
});
