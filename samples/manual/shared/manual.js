// Two helps for readers: a list of the page's sections, and a button on each code block that copies it.
(function () {
    'use strict';

    var texts = {
        en: { sections: 'On this page', copy: 'Copy', copied: 'Copied', press: 'Press Ctrl+C' },
        zh: { sections: '本页内容', copy: '复制', copied: '已复制', press: '请按 Ctrl+C' }
    };
    var text = texts[document.documentElement.lang.split('-')[0]] || texts.en;
    var kSectionsWorthAList = 4;
    var kMessageTime = 1500;

    function addSectionList() {
        var headings = document.querySelectorAll('h2');
        if (headings.length < kSectionsWorthAList) {
            return;
        }
        var details = document.createElement('details');
        var list = document.createElement('ul');
        details.className = 'on-this-page';
        details.open = true;
        details.appendChild(document.createElement('summary')).textContent = text.sections;
        details.appendChild(list);
        headings.forEach(function (heading, index) {
            heading.id = heading.id || 'section-' + (index + 1);
            var link = document.createElement('a');
            link.href = '#' + heading.id;
            link.textContent = heading.textContent;
            list.appendChild(document.createElement('li')).appendChild(link);
        });
        headings[0].parentNode.insertBefore(details, headings[0]);
    }

    function copy(code) {
        var selection = window.getSelection();
        var range = document.createRange();
        range.selectNodeContents(code);
        selection.removeAllRanges();
        selection.addRange(range);
        // The page has no origin that the newer clipboard interface would trust. Where the view refuses this
        // one too, the selection stays for the keyboard.
        if (!document.execCommand('copy')) {
            return false;
        }
        selection.removeAllRanges();
        return true;
    }

    function addCopyButton(block) {
        var button = document.createElement('button');
        button.type = 'button';
        button.className = 'copy';
        button.textContent = text.copy;
        button.addEventListener('click', function () {
            button.textContent = copy(block.querySelector('code')) ? text.copied : text.press;
            setTimeout(function () {
                button.textContent = text.copy;
            }, kMessageTime);
        });
        block.appendChild(button);
    }

    addSectionList();
    document.querySelectorAll('pre').forEach(function (block) {
        if (block.querySelector('code')) {
            addCopyButton(block);
        }
    });
})();
